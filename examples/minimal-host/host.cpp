// The least host of the update plug-in: loads it, ticks it for a while, ends in order. Beside
// the program lie xnbase.dll, which is xnbase.cpp, and xnplugins/xrefresher.dll.
// docs/embedding.md tells what a host does beyond this.
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <thread>

#include "host/ixtrayplugin.h"
#include "platform/modules.h"

namespace {

constexpr int ticks = 12; // at this interval they go beyond the first gates of all channels
constexpr std::chrono::milliseconds interval(100);

/// LoadLibraryW and GetProcAddress are all that is needed in place of `platform` on Windows.
template <class Function>
Function require(platform::ModuleHandle module, const char* name) {
    void* const found = platform::findExport(module, name);
    if (found == nullptr) {
        std::cerr << "minimalhost: no module with " << name << "\n";
        std::exit(1);
    }
    return reinterpret_cast<Function>(found);
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "usage: minimalhost http://HOST:PORT\n";
        return 2;
    }
    // Before the plug-in, which looks for this module in the process and never loads it.
    const platform::ModuleHandle base = platform::loadModule(L"xnbase.dll");
    require<void (*)(const char*)>(base, "useServer")(arguments[1]);
    const auto runningChains = require<int (*)()>(base, "runningChains");

    const platform::ModuleHandle library = platform::loadModule(L"xnplugins\\xrefresher.dll");
    const auto create = require<xtray::IXTrayPlugin* (*)()>(library, "CreateUpdatePlugin");
    static xtray::IXTrayPlugin* const plugin = create(); // there is no way to free it
    if (plugin == nullptr || !plugin->start(nullptr)) {
        return 1;
    }
    for (int tick = 0; tick < ticks; ++tick) {
        plugin->tick();
        std::this_thread::sleep_for(interval);
    }
    while (runningChains() > 0) { // ended in the middle, a chain would meet freed objects
        std::this_thread::sleep_for(interval);
    }
    return 0;
}
