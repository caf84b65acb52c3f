#include "sandbox/server/upgradeserver.h"

#include "sandbox/server/storage.h"
#include "sandbox/server/upgrademessages.h"

namespace sandbox {

void UpgradeServer::beginRun(const UpgradeOffer& offered, const ExpectedUpgrade& wanted) {
    offer = offered;
    expected = wanted;
    version = 0;
    offers = 0;
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
    for (std::size_t i = version; i < expected.versions.size(); ++i) {
        if (body == packageCheckBody(expected, expected.versions[i])) {
            version = i;
        }
    }
    return version < expected.versions.size() ? expected.versions[version] : "";
}

Answered UpgradeServer::checkPackage(const Headers& headers, const std::string& body,
                                     const std::string& address, std::string& words) {
    ++made.packageChecks;
    const std::string running = runningVersion(body);
    judge("package check", headers, expected.packageToken,
          bodyDifference(packageCheckBody(expected, running), body));
    const bool isNewer =
        offer.package && offer.package->version != running && offers < offer.package->times;
    offers += isNewer ? 1 : 0;
    words = running + (isNewer ? " -> " + offer.package->version : ", nothing newer");
    return answeredWith(expected.packageFault,
                        packageAnswer(isNewer ? &*offer.package : nullptr, address));
}

Answered UpgradeServer::checkFiles(const Headers& headers, const std::string& body,
                                   const std::string& address, std::string& words) {
    ++made.fileChecks;
    judge("file check", headers, expected.token, bodyDifference(fileCheckBody(expected), body));
    for (const OfferedFile& file : offer.files) {
        words += (words.empty() ? "" : ", ") + file.name + " " + file.version;
    }
    return answeredWith(expected.fileFault, fileAnswer(offer, address));
}

std::string UpgradeServer::fileIdOf(const std::string& path) {
    const std::string_view folder = upgradeFilesFolder;
    const std::string id = path.rfind(folder, 0) == 0 ? path.substr(folder.size()) : "";
    return isPlainName(id) ? id : "";
}

TransferFault UpgradeServer::fetch(const std::string& fileId, const Headers& headers) {
    made.downloads.push_back(fileId);
    if (const std::string surplus = surplusHeaders(headers); !surplus.empty()) {
        complain("GET " + fileId + ": surplus headers " + surplus);
    }
    const auto fault = expected.transfers.find(fileId);
    return fault == expected.transfers.end() ? TransferFault{} : fault->second;
}

} // namespace sandbox
