#pragma once

#include "xtaskbase.h"

/// End of the chain: starts the helper program and never calls `finish`, which keeps the
/// queue busy for the life of the process. That is what makes the start the only one.
class XTaskOtherRun final : public XTaskBase {
public:
    using XTaskBase::check;
    void check(FinishCallback finish) override;
};
