#pragma once

#include "updatepkg/task/xtaskpkgbase.h"

/// Head of the automatic chain: the time gate of the channel.
class XTaskPkgCondition final : public XTaskPkgBase {
public:
    using XTaskBase::check;
    using XTaskPkgBase::XTaskPkgBase;

    /// Takes over the time of the last check from the settings; a first start begins now.
    static void loadLastCheckTime();

    void check(FinishCallback finish) override;

private:
    static bool _checkTimes();
};
