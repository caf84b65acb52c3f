#include "sandbox/doctor/doctor.h"

#include "sandbox/doctor/checks.h"

namespace sandbox::doctor {

Report examine(const Places& places) {
    Report report;
    const Snapshot snapshot = takeSnapshot(places, report);
    for (const auto check : {checkModules, checkFileList, checkVersions, checkPadding, checkDelayed,
                             checkLeftovers, checkSettings, checkPackage, checkUse}) {
        check(snapshot, report);
    }
    return report;
}

} // namespace sandbox::doctor
