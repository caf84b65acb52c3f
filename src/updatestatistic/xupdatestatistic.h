#pragma once

#include <cstdint>

#include "xupdate.h"

/// Reports that the client runs. Works on the host's thread, inside checkUpdate; keeps no
/// thread, queue or stored value.
class XUpdateStatistic final : public XUpdate {
public:
    int init() override;
    int checkUpdate() override;

private:
    void _sendEvent();

    std::uint64_t lastTick = 0; ///< tick count of the last report or of init, zero-extended
};
