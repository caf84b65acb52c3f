#pragma once

#include "xtaskqueue.h"
#include "xupdate.h"

/// Starts the client's helper program once a process, for a logged-in user. Its chain of
/// condition and run never ends once it has got through, so the channel's own queue drops
/// every later one. Lives as long as the process.
class XUpdateOther final : public XUpdate {
public:
    int init() override;
    /// 0 when a chain was handed over, -1 without a logged-in user.
    int checkUpdate() override;

private:
    XTaskQueue queue;
};
