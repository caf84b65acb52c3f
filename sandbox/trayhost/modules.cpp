#include "sandbox/trayhost/modules.h"

#include <iostream>

#include "platform/text.h"

namespace {

/// In the order in which they are loaded: xnbase.dll serves the log of all others.
constexpr const wchar_t* clientModules[] = {
    L"xnbase.dll", L"OrvBase.dll", L"XNGuardBase.dll", L"XNSetting.dll", L"xnuser.dll",
};

constexpr const wchar_t* plugin = L"xnplugins\\xrefresher.dll";

platform::ModuleHandle loadOrSay(const wchar_t* file) {
    const platform::ModuleHandle module = platform::loadModule(file);
    if (!module) {
        std::cerr << "trayhost: cannot load " << platform::toUtf8(file) << '\n';
    }
    return module;
}

} // namespace

void loadClientModules() {
    for (const wchar_t* file : clientModules) {
        loadOrSay(file); // a half-installed client runs on without it
    }
}

platform::ModuleHandle loadPlugin() {
    return loadOrSay(plugin);
}

void* requireExport(platform::ModuleHandle module, const char* file, const char* name) {
    void* const address = platform::findExport(module, name);
    if (module && !address) {
        std::cerr << "trayhost: " << file << " has no export " << name << '\n';
    }
    return address;
}

std::vector<void*> exportsOfClientModules(const char* name) {
    std::vector<void*> found;
    for (const wchar_t* file : clientModules) {
        if (void* const address = platform::findExport(platform::findModule(file), name)) {
            found.push_back(address);
        }
    }
    return found;
}
