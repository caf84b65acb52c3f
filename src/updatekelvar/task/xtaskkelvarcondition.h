#pragma once

#include <string>

#include "xtaskbase.h"

/// Head of the chain: the time gate of the channel and, once it is passed, the sweep of
/// the files that the former run pushed aside.
class XTaskKelvarCondition final : public XTaskBase {
public:
    using XTaskBase::check;

    /// Takes over the time of the last check from the settings; a first start begins now.
    static void loadLastCheckTime();

    void check(FinishCallback finish) override;

private:
    static bool _checkTimes();
    static void _clearTempFiles();
    static std::string _getTempDirPath();
};
