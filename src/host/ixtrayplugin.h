#pragma once

namespace xtray {

/// What the tray host sees of a plug-in. Made by the export
/// `xtray::IXTrayPlugin* CreateUpdatePlugin()`; never freed, lives as long as the
/// process. All calls on the host's one thread, in the order start, tick, tick, …
class IXTrayPlugin {
public:
    virtual bool start(void* context) = 0; ///< slot 0; once; `context` is not read
    virtual void tick() = 0;               ///< slot 1; returns at once, apart from up to
                                           ///< 100 ms for each channel that is busy

protected:
    ~IXTrayPlugin() = default;
};

} // namespace xtray
