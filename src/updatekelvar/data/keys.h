#pragma once

#include <string>

/// Keys of the update platform's things. Plain values; texts as the platform gave them.

struct XChannelKey {
    std::string productId;
    std::string id;
};

struct XModuleKey {
    std::string id;
    XChannelKey channel;
};

struct XMaterialKey {
    std::string id;
    XModuleKey module;
};

/// A material at one of its versions.
struct XMaterialVersionKey {
    XMaterialKey material;
    std::string ver;
};

/// A packet: all materials of a channel at one version.
struct XPacketKey {
    XChannelKey channel;
    std::string ver;
};
