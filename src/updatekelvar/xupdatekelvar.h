#pragma once

#include "host/usercenter.h"
#include "xtaskqueue.h"
#include "xupdate.h"

/// The channel of the update platform: every check builds a fresh chain of condition,
/// fetch, download and move, and gives it to the channel's own queue. Nothing of a run is
/// kept here. Lives as long as the process.
class XUpdateKelvar final : public XUpdate, public uc::UserStateObserverBase {
public:
    int init() override;
    int checkUpdate() override;

    /// Drives the channel. The channel does not register itself with the user centre, so
    /// nobody calls this unless another module does.
    void event2(void* argument) override;

private:
    XTaskQueue queue;
};
