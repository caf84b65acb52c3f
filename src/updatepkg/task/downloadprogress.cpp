#include "updatepkg/task/downloadprogress.h"

#include <algorithm>

namespace {

/// The greatest single-precision number that an int holds.
constexpr float percentLimit = 2147483520.0F;

/// In single precision, as clients have always counted; above 100 when more comes than was
/// told.
float percentOf(std::uint64_t received, std::int64_t total) {
    const double divisor = static_cast<float>(total);
    return static_cast<float>(static_cast<double>(received) * 100.0 / divisor);
}

} // namespace

DownloadProgress& DownloadProgress::instance() {
    static DownloadProgress& progress = *new DownloadProgress;
    return progress;
}

void DownloadProgress::setSender(const std::shared_ptr<XUpdatePkgSender>& told) {
    MutexLock guard(lock);
    sender = told;
}

void DownloadProgress::restart() {
    expectedTotal = usualTotal;
    receivedBytes = 0;
    lastPercent = 0;
}

void DownloadProgress::expect(std::int64_t bytes) {
    if (bytes > 0) {
        expectedTotal = bytes;
    }
}

void DownloadProgress::received(std::size_t bytes) {
    const std::uint64_t all = receivedBytes += bytes;
    const float percent = std::min(percentOf(all, expectedTotal), percentLimit);
    if (percent - static_cast<float>(lastPercent) < 1.0F) {
        return;
    }
    const auto whole = static_cast<std::int32_t>(percent);
    report(whole);
    lastPercent = whole;
}

void DownloadProgress::report(int percent) {
    std::shared_ptr<XUpdatePkgSender> told;
    {
        MutexLock guard(lock);
        told = sender;
    }
    if (told) {
        told->sendDownloadProgress(percent);
    }
}
