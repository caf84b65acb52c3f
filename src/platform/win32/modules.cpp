#include "platform/modules.h"

#include "platform/win32/windowsapi.h"

#include <string>

namespace platform {

namespace {

bool isBare(const std::wstring& name) {
    return name.find_first_of(L"\\/") == std::wstring::npos;
}

bool isAbsolute(const std::wstring& name) {
    return name.starts_with(L'\\') || (name.size() > 1 && name[1] == L':');
}

/// Where a module lies: relative names count from the host's folder only.
std::wstring moduleFile(const std::wstring& name) {
    if (isAbsolute(name)) {
        return name;
    }
    wchar_t path[MAX_PATH];
    const DWORD length = ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    const std::wstring host(path, length < MAX_PATH ? length : 0);
    return host.substr(0, host.rfind(L'\\') + 1) + name;
}

} // namespace

ModuleHandle findModule(const wchar_t* name) {
    return ::GetModuleHandleW(isBare(name) ? name : moduleFile(name).c_str());
}

ModuleHandle loadModule(const wchar_t* name) {
    HMODULE module = nullptr;
    if (isBare(name) && ::GetModuleHandleExW(0, name, &module)) {
        return module;
    }
    return ::LoadLibraryW(moduleFile(name).c_str());
}

void freeModule(ModuleHandle module) {
    if (module) {
        ::FreeLibrary(static_cast<HMODULE>(module));
    }
}

void* findExport(ModuleHandle module, const char* name) {
    if (!module) {
        // A null module would mean the host's executable.
        ::SetLastError(ERROR_PROC_NOT_FOUND);
        return nullptr;
    }
    return reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(module), name));
}

} // namespace platform
