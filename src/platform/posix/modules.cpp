#include "platform/modules.h"

#include "platform/asciicase.h"
#include "platform/posix/foundmodules.h"
#include "platform/posix/systempath.h"
#include "platform/text.h"

#include <algorithm>
#include <dlfcn.h>
#include <link.h>
#include <sys/stat.h>

namespace platform {

using posix::fail;

namespace {

/// Stands beside "X.dll" as "X.dll.so" where that name carries a PE image, which has the
/// version resource and cannot be loaded here.
constexpr const char* libraryMark = ".so";

/// The client path of a module: extension added and separators turned as the client's
/// system does.
std::string moduleName(const wchar_t* name) {
    std::string text = toUtf8(name);
    std::replace(text.begin(), text.end(), '/', '\\');
    const std::size_t fileStart = text.rfind('\\') + 1;
    return text.find('.', fileStart) == std::string::npos ? text + ".dll" : text;
}

bool isBare(const std::string& name) {
    return name.find('\\') == std::string::npos;
}

/// Where a module lies: relative names count from the host's folder only.
std::string moduleFile(const std::string& name) {
    const std::string path = name[0] == '\\' ? name : posix::hostFolder() + '\\' + name;
    const std::string library = posix::resolvePath(path + libraryMark);
    struct stat status {};
    return ::stat(library.c_str(), &status) == 0 ? library : posix::resolvePath(path);
}

bool carriesName(const std::string& loadedPath, const std::string& name) {
    const std::string file = loadedPath.substr(loadedPath.rfind('/') + 1);
    return equalIgnoringCase(file, name) || equalIgnoringCase(file, name + libraryMark);
}

struct LoadedSearch {
    const std::string& name;
    std::string path;
};

int compareLoaded(dl_phdr_info* module, std::size_t, void* context) {
    auto& search = *static_cast<LoadedSearch*>(context);
    if (!carriesName(module->dlpi_name, search.name)) {
        return 0;
    }
    search.path = module->dlpi_name;
    return 1;
}

/// The module of that name in this process, with a reference of its own; else null.
void* openLoaded(const std::string& name) {
    LoadedSearch search{name, {}};
    if (!isBare(name)) {
        search.path = moduleFile(name);
    } else {
        ::dl_iterate_phdr(compareLoaded, &search);
    }
    return search.path.empty() ? nullptr : ::dlopen(search.path.c_str(), RTLD_LAZY | RTLD_NOLOAD);
}

bool isRegularFile(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

/// Whether `address` lies in the module itself: dlsym looks into the libraries that it
/// depends on as well.
bool isOwnExport(void* module, void* address) {
    link_map* asked = nullptr;
    void* found = nullptr;
    Dl_info place{};
    return ::dlinfo(module, RTLD_DI_LINKMAP, &asked) == 0 &&
           ::dladdr1(address, &place, &found, RTLD_DL_LINKMAP) != 0 && found == asked;
}

int takeTurnover(dl_phdr_info* module, std::size_t, void* turnover) {
    *static_cast<posix::ModuleTurnover*>(turnover) = {module->dlpi_adds, module->dlpi_subs};
    return 1; // the same with every module
}

constinit posix::FoundModules<std::wstring_view> foundModules;
constinit posix::FoundModules<std::string_view> foundExports;

ModuleHandle searchModule(const wchar_t* name) {
    void* const module = openLoaded(moduleName(name));
    if (module) {
        ::dlclose(module);
    }
    return module;
}

void* searchExport(ModuleHandle module, const char* name) {
    void* const address = ::dlsym(module, name);
    return address && isOwnExport(module, address) ? address : nullptr;
}

} // namespace

posix::ModuleTurnover posix::ModuleTurnover::now() {
    ModuleTurnover turnover;
    ::dl_iterate_phdr(takeTurnover, &turnover);
    return turnover;
}

ModuleHandle findModule(const wchar_t* name) {
    const std::wstring_view asked = name;
    const bool isPath =
        std::any_of(asked.begin(), asked.end(), [](wchar_t c) { return c == L'\\' || c == L'/'; });
    const auto search = [name] {
        return searchModule(name);
    };
    // What a path leads to may change without any module.
    const ModuleHandle module = isPath ? search() : foundModules.find(nullptr, asked, search);
    if (!module) {
        fail(errorModuleNotFound);
    }
    return module;
}

ModuleHandle loadModule(const wchar_t* name) {
    const std::string asked = moduleName(name);
    if (void* module = openLoaded(asked)) {
        return module;
    }
    const std::string file = moduleFile(asked);
    if (!isRegularFile(file)) {
        fail(errorModuleNotFound);
        return nullptr;
    }
    void* module = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!module) {
        fail(errorBadExeFormat);
    }
    return module;
}

void freeModule(ModuleHandle module) {
    if (module) {
        ::dlclose(module);
    }
}

void* findExport(ModuleHandle module, const char* name) {
    const auto search = [module, name] {
        return searchExport(module, name);
    };
    void* const address = module ? foundExports.find(module, name, search) : nullptr;
    if (!address) {
        fail(errorProcNotFound);
    }
    return address;
}

} // namespace platform
