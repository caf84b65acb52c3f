#pragma once

#include <atomic>
#include <cstdint>

#include "xtaskbase.h"

/// Tick count from which the gate counts: that of the channel's init or of the last pass.
/// Written on the host's thread and on the queue's worker, never at the same time.
inline std::atomic<std::uint64_t> otherLastTick = 0;

/// Head of the chain: the channel's time gate.
class XTaskOtherCondition final : public XTaskBase {
public:
    using XTaskBase::check;
    void check(FinishCallback finish) override;

private:
    bool _checkTimes();

    bool firstCheck = true; ///< still set in every fresh chain, so the first threshold decides
};
