#include "sandbox/trayhost/commands.h"

#include <cstring>
#include <iostream>

#include "host/iupdatekelvar.h"
#include "host/ixtrayplugin.h"
#include "sandbox/trayhost/modules.h"

namespace {

template <class Function>
Function pluginExport(const char* name) {
    return reinterpret_cast<Function>(requireExport(loadPlugin(), "xrefresher.dll", name));
}

XRefresher::IUpdateKelvar* versionService() {
    const auto make = pluginExport<XRefresher::IUpdateKelvar* (*)()>("GetUpdateKelvar");
    return make ? make() : nullptr;
}

ExitStatus sayNoStore() {
    std::cerr << "trayhost: there is no version store (xnbase.dll)\n";
    return exitMissing;
}

} // namespace

ExitStatus drivePlugin(Host& host) {
    const auto create = pluginExport<xtray::IXTrayPlugin* (*)()>("CreateUpdatePlugin");
    // The plug-in has no end of its own; being static it is no leak either.
    static xtray::IXTrayPlugin* const plugin = create ? create() : nullptr;
    if (!plugin) {
        return exitMissing;
    }
    if (!plugin->start(nullptr)) {
        std::cerr << "trayhost: the plug-in did not start\n";
        return exitNotStarted;
    }
    std::cerr << "trayhost: the plug-in has started\n";
    return host.drive([] { plugin->tick(); });
}

ExitStatus driveService(Host& host) {
    const auto start = pluginExport<int (*)()>("StartKelvarService");
    if (!start) {
        return exitMissing;
    }
    start();
    std::cerr << "trayhost: the service has started\n";
    return host.drive({});
}

ExitStatus printVersion() {
    XRefresher::IUpdateKelvar* const service = versionService();
    if (!service) {
        return exitMissing;
    }
    char version[XRefresher::IUpdateKelvar::versionSize] = {};
    service->getVersion(version);
    service->release();
    if (version[0] == '\0') {
        return sayNoStore();
    }
    std::cout << std::string(version, strnlen(version, sizeof version)) << '\n';
    return exitDone;
}

ExitStatus storeVersion(const std::string& version) {
    XRefresher::IUpdateKelvar* const service = versionService();
    if (!service) {
        return exitMissing;
    }
    const int result = service->setVersion(version.c_str());
    service->release();
    if (result != 0) {
        return sayNoStore();
    }
    std::cerr << "trayhost: the version is now " << version << '\n';
    return exitDone;
}
