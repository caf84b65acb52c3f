#include "updatekelvar/task/kelvaridentity.h"

#include <atomic>

#include "utils/mutex.h"

namespace {

struct ChannelId {
    Mutex lock;
    std::string text XR_GUARDED_BY(lock) = "tulsar_upgrade_1.0";
};

/// Never destroyed: the host's threads may still run while the process ends.
ChannelId& s_channelId() {
    static ChannelId& channel = *new ChannelId;
    return channel;
}

std::atomic<bool> s_testParam = false;

} // namespace

namespace kelvaridentity {

std::string channelId() {
    ChannelId& channel = s_channelId();
    const MutexLock lock(channel.lock);
    return channel.text;
}

void setChannelId(const std::string& id) {
    ChannelId& channel = s_channelId();
    const MutexLock lock(channel.lock);
    channel.text = id;
}

bool testParam() {
    return s_testParam;
}

void setTestParam(bool on) {
    s_testParam = on;
}

} // namespace kelvaridentity
