#pragma once

#include <functional>
#include <string>

#include "sandbox/server/requests.h"
#include "sandbox/server/upgradeoffer.h"

namespace sandbox {

/// The upgrade server's side of one run after the other: judges each request and answers
/// it. One thread at a time.
class UpgradeServer {
public:
    using Complain = std::function<void(const std::string&)>;

    explicit UpgradeServer(Complain sink) : complain(std::move(sink)) {}

    void beginRun(const UpgradeOffer& offered, const ExpectedUpgrade& wanted);
    const UpgradeReport& report() const { return made; }

    /// Judge the request; the right answer. `address` is the server's own. `words` becomes
    /// what was asked, for who watches.
    std::string checkPackage(const Headers& headers, const std::string& body,
                             const std::string& address, std::string& words);
    std::string checkFiles(const Headers& headers, const std::string& body,
                           const std::string& address, std::string& words);

    /// The file id of an address of this server; empty for another path.
    static std::string fileIdOf(const std::string& path);
    /// "package", or the data file's name; empty for a file that is not on offer.
    std::string nameOf(const std::string& fileId) const;
    /// Takes a request for the file of that id.
    void fetch(const std::string& fileId, const Headers& headers);

private:
    void judge(const char* name, const Headers& headers, const std::string& token,
               const std::string& difference);
    std::string runningVersion(const std::string& body);

    Complain complain;
    UpgradeOffer offer;
    ExpectedUpgrade expected;
    std::size_t version = 0; ///< of the expected ones, that the client last told
    UpgradeReport made;
};

} // namespace sandbox
