#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "sandbox/server/offer.h"

/// What the sandbox's upgrade server knows, as plain values.
namespace sandbox {

/// The whole-client package; its file lies in the storage folder under `fileId`.
struct OfferedPackage {
    std::string version;
    std::string fileId;
    std::string md5;                ///< of the stored file, or what the scenario claims it to be
    std::optional<std::string> url; ///< not the right one; "/..." is a path of the server
    std::string content;
    std::uint64_t size = 0; ///< as announced
    bool isForce = false;
};

/// One of the fixed data files.
struct OfferedFile {
    int type = 0;
    std::string name;
    std::string version;
    std::string fileId;
    std::string md5;
    std::optional<std::string> url; ///< as in OfferedPackage
    std::uint64_t size = 0;
};

struct UpgradeOffer {
    std::optional<OfferedPackage> package;
    std::vector<OfferedFile> files;
};

/// What a client has to send in one run.
struct ExpectedUpgrade {
    std::string channel;
    std::string phone;
    std::string packagePhone; ///< told with the package check
    std::string token;        ///< empty: no header of that name
    std::string packageToken; ///< likewise, of the package check
    std::string language;
    std::string osVersion;
    /// Versions that the client runs with, in turn: its own, then that of the package.
    std::vector<std::string> versions;
    std::vector<std::pair<int, std::string>> files; ///< types and versions that it has
};

/// What came of one run.
struct UpgradeReport {
    std::size_t packageChecks = 0;
    std::size_t fileChecks = 0;
    std::vector<std::string> downloads; ///< file ids in the order of their requests
};

} // namespace sandbox
