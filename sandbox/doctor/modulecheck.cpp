#include <array>

#include "sandbox/common/clientpath.h"
#include "sandbox/doctor/checks.h"

namespace sandbox::doctor {
namespace {

constexpr std::array<const char*, 8> modules{
    "xnbase.dll",  "XNSetting.dll",   "xnuser.dll",         "xnquiet.dll",
    "OrvBase.dll", "XNGuardBase.dll", "OrvSecurityver.dll", "xnplugins\\xrefresher.dll"};

} // namespace

void checkModules(const Snapshot& snapshot, Report& report) {
    for (const std::string module : modules) {
        const std::string key = comparablePath(module);
        if (snapshot.fileAt(key) == nullptr && !snapshot.isUnknown(key)) {
            report.add(Code::moduleMissing, module, module + " is not there");
        }
    }
}

} // namespace sandbox::doctor
