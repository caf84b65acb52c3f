#include "sandbox/server/upgradeserver.h"

#include <algorithm>

#include <nlohmann/json.hpp>

#include "sandbox/server/storage.h"
#include "sandbox/server/upgrademessages.h"

namespace sandbox {
namespace {

constexpr const char* packageName = "package";

/// The version that the body tells, whatever else it does.
std::string versionIn(const std::string& body) {
    const auto told = nlohmann::json::parse(body, nullptr, false);
    const auto found = told.find("version");
    return told.is_object() && found != told.end() && found->is_string() ? found->get<std::string>()
                                                                         : "";
}

} // namespace

void UpgradeServer::beginRun(const UpgradeOffer& offered, const ExpectedUpgrade& wanted) {
    offer = offered;
    expected = wanted;
    version = 0;
    made = {};
}

void UpgradeServer::judge(const char* name, const Headers& headers, const std::string& token,
                          const std::string& difference) {
    const std::string wrong = upgradeHeaderDifference(headers, token);
    for (const std::string& text : {wrong, difference}) {
        if (!text.empty()) {
            complain(std::string(name) + ": " + text);
        }
    }
}

/// The version that the client has to tell: a later one stays, once it was told.
std::string UpgradeServer::runningVersion(const std::string& body) {
    const std::string told = versionIn(body);
    const auto begin = expected.versions.begin();
    const auto found =
        std::find(begin + static_cast<std::ptrdiff_t>(version), expected.versions.end(), told);
    if (found != expected.versions.end()) {
        version = static_cast<std::size_t>(found - begin);
    }
    return version < expected.versions.size() ? expected.versions[version] : "";
}

std::string UpgradeServer::checkPackage(const Headers& headers, const std::string& body,
                                        const std::string& address, std::string& words) {
    ++made.packageChecks;
    const std::string running = runningVersion(body);
    judge("package check", headers, expected.packageToken,
          bodyDifference(packageCheckBody(expected, running), body));
    const bool isNewer = offer.package && offer.package->version != running;
    words = running + (isNewer ? " -> " + offer.package->version : ", nothing newer");
    return packageAnswer(isNewer ? &*offer.package : nullptr, address);
}

std::string UpgradeServer::checkFiles(const Headers& headers, const std::string& body,
                                      const std::string& address, std::string& words) {
    ++made.fileChecks;
    judge("file check", headers, expected.token, bodyDifference(fileCheckBody(expected), body));
    for (const OfferedFile& file : offer.files) {
        words += (words.empty() ? "" : ", ") + file.name + " " + file.version;
    }
    return fileAnswer(offer, address);
}

std::string UpgradeServer::fileIdOf(const std::string& path) {
    const std::string_view folder = upgradeFilesFolder;
    const std::string id = path.rfind(folder, 0) == 0 ? path.substr(folder.size()) : "";
    return isPlainName(id) ? id : "";
}

std::string UpgradeServer::nameOf(const std::string& fileId) const {
    if (offer.package && offer.package->fileId == fileId) {
        return packageName;
    }
    const auto found = std::find_if(offer.files.begin(), offer.files.end(),
                                    [&](const OfferedFile& file) { return file.fileId == fileId; });
    return found == offer.files.end() ? "" : found->name;
}

void UpgradeServer::fetch(const std::string& fileId, const Headers& headers) {
    made.downloads.push_back(fileId);
    if (const std::string surplus = surplusHeaders(headers); !surplus.empty()) {
        complain("GET " + fileId + ": surplus headers " + surplus);
    }
}

} // namespace sandbox
