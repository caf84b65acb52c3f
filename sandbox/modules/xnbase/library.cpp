#include <algorithm>

#include "host/xnbase.h"
#include "platform/paths.h"
#include "platform/text.h"
#include "sandbox/common/clientpath.h"
#include "sandbox/common/config.h"
#include "sandbox/common/events.h"

namespace {

constexpr int loadError = -1;

bool hasBadSignature(const std::string& name) {
    const std::vector<std::string>& bad = sandbox::processConfig().badSignature;
    return std::any_of(bad.begin(), bad.end(), [&](const std::string& file) {
        return sandbox::sameName(file, name) || sandbox::sameName(file, platform::fileNameOf(name));
    });
}

void report(const std::string& name, const std::wstring& directory, const char* result) {
    sandbox::emit({{"kind", "library"},
                   {"name", name},
                   {"directory", platform::toUtf8(directory)},
                   {"result", result}});
}

} // namespace

extern "C" platform::ModuleHandle loadXNLibrary(const wchar_t* name, const wchar_t* directory,
                                                bool /*flag*/, int* error) {
    const std::wstring folder = directory ? directory : L"";
    const std::wstring wanted = name ? name : L"";
    const std::string file = platform::toUtf8(wanted);
    const bool badSignature = hasBadSignature(file);
    platform::ModuleHandle module = nullptr;
    if (!badSignature && !wanted.empty()) {
        module = platform::loadModule((folder.empty() ? wanted : folder + L'\\' + wanted).c_str());
    }
    if (error) {
        *error = badSignature ? xnbase::signatureError : (module ? 0 : loadError);
    }
    report(file, folder, badSignature ? "badSignature" : (module ? "loaded" : "missing"));
    return module;
}

static_assert(std::is_same_v<decltype(&loadXNLibrary), xnbase::loadXNLibrary>);
