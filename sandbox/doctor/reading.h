#pragma once

#include "sandbox/doctor/snapshot.h"

/// The parts of a snapshot, each by its own reader. A part that is not known is left out.
namespace sandbox::doctor {

void readFiles(Snapshot& snapshot, Report& report);
void readStores(Snapshot& snapshot, Report& report);
void readFileList(Snapshot& snapshot, Report& report);
/// The lists of the Kelvar channel and of the file channel, out of the settings.
void readLists(Snapshot& snapshot);
void readDelayed(Snapshot& snapshot, Report& report);
void readLog(Snapshot& snapshot);
void readStorage(Snapshot& snapshot);
void readPackage(Snapshot& snapshot);

} // namespace sandbox::doctor
