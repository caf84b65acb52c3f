#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// What the sandbox's update platform knows, as plain values. The platform and its JSON
/// share nothing with the plug-in, so that neither hides a mistake of the other.
namespace sandbox {

/// One material; its file lies in the storage folder under `fileId`.
struct OfferedMaterial {
    std::string name; ///< what the scenario calls it; never sent
    std::string id;
    std::string moduleId;
    std::string baseVersion;
    std::string version;
    std::string fileId;
    std::string md5; ///< of the stored file, or what the scenario claims it to be
    std::map<std::string, std::string> extends;
};

/// One module of the difference.
struct OfferedModule {
    std::string id;
    std::string baseVersion;
    std::string version;
};

/// What one packet brings.
struct Offer {
    std::string productId;
    std::string channelId; ///< of the keys; not the channel that the client names
    std::string version;
    std::string restartTray; ///< text of the packet's parameter; empty leaves it out
    std::vector<OfferedModule> modules;
    std::vector<OfferedMaterial> materials;
};

/// What one run of the client is to ask.
struct ExpectedRun {
    std::string channel;
    std::string version;
    std::int64_t oid = -1;
    std::int64_t id = -1;
    bool testSwitch = false;
    /// Questions of each conversation, in turn; fewer when one is to break off.
    std::vector<std::size_t> questions{5};
    bool isExact = false; ///< a conversation that a fault has hit has just as many, too
};

} // namespace sandbox
