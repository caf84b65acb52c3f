#pragma once

#include "updatekelvar/data/exec/materialexec.h"

/// Collects the programs of all materials of a run and starts each once for each
/// distinct parameter, the protection program after all others. One thread at a time.
class XExecMgr {
public:
    /// -1 for an empty map, else 0. Programs that differ in case only are one.
    int addExec(const XExecMap& map);

    /// Starts them in the order of their names; always 0. Keeps what was collected. A
    /// start that fails is not seen.
    int execAll();

private:
    int _exec(const XExecMap& map);

    XExecMap normalExecs;  ///< names in lower case
    XExecMap protectExecs; ///< the protection program alone
};
