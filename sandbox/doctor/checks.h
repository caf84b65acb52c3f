#pragma once

#include "sandbox/doctor/finding.h"
#include "sandbox/doctor/snapshot.h"

/// What is looked for. Each adds what it finds to the report; none writes anything. What the
/// client leaves behind by design after a good run is no finding.
namespace sandbox::doctor {

/// The modules that the updater binds by name.
void checkModules(const Snapshot& snapshot, Report& report);
/// Every entry of filelist.xml against its file.
void checkFileList(const Snapshot& snapshot, Report& report);
/// The version store against the files.
void checkVersions(const Snapshot& snapshot, Report& report);
/// The padding list against the folder update and the delayed moves.
void checkPadding(const Snapshot& snapshot, Report& report);
/// The delayed moves against the files and the padding list.
void checkDelayed(const Snapshot& snapshot, Report& report);
/// What lies in update and update\temp and belongs to nothing.
void checkLeftovers(const Snapshot& snapshot, Report& report);
/// The form of the settings that the updater reads.
void checkSettings(const Snapshot& snapshot, Report& report);
/// The stored offer of the package against update\setup.exe and the client's version.
void checkPackage(const Snapshot& snapshot, Report& report);
/// Who keeps files in use.
void checkUse(const Snapshot& snapshot, Report& report);

} // namespace sandbox::doctor
