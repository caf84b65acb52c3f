#include <cstring>
#include <string>

#include "sandbox/common/config.h"

/// The client's channel, for OrvSecurityver.dll. 0 when the text and its terminating zero fit
/// in the `*length` bytes of `buffer`; else -1. `*length` becomes the length of the text
/// without the zero.
extern "C" int sandboxChannelType(char* buffer, int* length) {
    if (!buffer || !length) {
        return -1;
    }
    const std::string channel = sandbox::readConfig().channelType;
    const int size = *length;
    *length = static_cast<int>(channel.size());
    if (size <= *length) {
        return -1;
    }
    std::memcpy(buffer, channel.c_str(), channel.size() + 1);
    return 0;
}
