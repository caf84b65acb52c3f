#include "host/upgradeserver.h"

#include "host/hostmodules.h"

namespace upgradeserver {

std::string makeUrl(const char* path) {
    IXEnvConfig* config = hostmodules::envConfigInstance();
    const char* address = config ? config->upgradeAddress() : nullptr;
    return address ? std::string(address) + path : std::string();
}

void post(const std::string& url, const std::string& token, const std::string& body,
          const xnhttp::ResponseStep& step) {
    xnhttp::Headers headers;
    if (!token.empty()) {
        headers.emplace_back("BrevToken", token);
    }
    headers.emplace_back(xnhttp::contentType, xnhttp::contentTypeJson);
    xnhttp::sendRequest(xnhttp::methodPost, url, headers, body, step);
}

} // namespace upgradeserver
