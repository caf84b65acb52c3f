#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "updatepkg/xupdatepkgsender.h"
#include "utils/mutex.h"

/// Counts the bytes of a transfer and posts its progress, one event a whole percent. One for
/// the process: two transfers, which the channel's queue lets run only after a stop, share
/// its numbers. Any thread.
class DownloadProgress {
public:
    /// Never destroyed: a transfer may outlive the end of main.
    static DownloadProgress& instance();

    /// Who is told from now on, or null.
    void setSender(const std::shared_ptr<XUpdatePkgSender>& told);

    /// Begins a transfer of a size that is not known.
    void restart();

    /// Tells the size; 0 and less mean that it is not known.
    void expect(std::int64_t bytes);
    void received(std::size_t bytes);

private:
    DownloadProgress() = default;
    void report(int percent);

    static constexpr std::int64_t usualTotal = 314572800; // 300 MiB

    std::atomic<std::int64_t> expectedTotal = usualTotal;
    std::atomic<std::uint64_t> receivedBytes = 0;
    std::atomic<std::int32_t> lastPercent = 0;
    Mutex lock;
    std::shared_ptr<XUpdatePkgSender> sender XR_GUARDED_BY(lock);
};
