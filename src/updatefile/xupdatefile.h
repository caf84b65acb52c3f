#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "host/usercenter.h"
#include "xtaskbase.h"
#include "xupdate.h"

/// The channel of the two data files beside the host's executable. Has no queue: one chain of
/// check and download, made in init, is entered directly for every run, and two runs may be
/// under way. Driven once at the start, by events of the user's state (in mute mode too) and
/// by its own retries. Three failed runs or one that succeeds end it for the life of the
/// process. Lives as long as the process: observer and retry threads point to it.
class XUpdateFile final : public XUpdate, public uc::UserStateObserverBase {
public:
    /// Registers the channel with the user centre, if there is one.
    int init() override;
    /// Any thread. Always 0.
    int checkUpdate() override;

    void event2(void* argument) override;

    /// Starts a thread that drives the channel after five minutes. Always true; throws
    /// std::system_error when no thread can be started.
    bool retry();

private:
    static constexpr std::int32_t attempts = 3;

    void _countRun(bool succ);

    /// Attempts left, 0 when the channel is finished. Touched by the host's, the delivery and
    /// the retry threads: runs that overlap spend one attempt each.
    std::atomic<std::int32_t> m_retry = attempts;
    std::shared_ptr<IXTaskBase> m_task; ///< written in init only
};
