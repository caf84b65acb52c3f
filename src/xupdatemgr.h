#pragma once

#include <memory>
#include <vector>

#include "utils/mutex.h"
#include "xupdate.h"

/// Owns the channels and drives them on the caller's thread. Channels are never removed.
class XUpdateMgr {
public:
    /// Takes a channel into the list that is driven once at start, or into the one that
    /// is driven on each tick, and calls its init. False for a null item, and when init
    /// answers other than 0; the channel is driven in that case too.
    bool addItem(const std::shared_ptr<IUpdate>& item, bool startItem);

    void startUpdate();
    void tickUpdate();

private:
    using Items = std::vector<std::shared_ptr<IUpdate>>;

    /// Drives a list, unless mute mode is on.
    void doItem(const Items& items);

    Mutex lock;
    Items startItems XR_GUARDED_BY(lock);
    Items tickItems XR_GUARDED_BY(lock);
};
