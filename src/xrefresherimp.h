#pragma once

#include "host/ixtrayplugin.h"
#include "xupdatemgr.h"

/// The plug-in object behind CreateUpdatePlugin.
class XRefresherImp final : public xtray::IXTrayPlugin {
public:
    bool start(void* context) override;
    void tick() override;

private:
    XUpdateMgr manager;
};
