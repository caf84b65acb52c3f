#pragma once

#include <vector>

#include "crash/sweep.h"

namespace crash {

/// The user's cancel ahead of every operation of the package channel: of a tick's chain, and of a
/// download that the user has asked for. A session without a cancel follows each. Throws when one
/// without a cancel does not get the package, or no operation is one of its transfer.
std::vector<Row> cancelSweep();

/// What is wrong with a session that was cancelled while bytes of the package were to come: the
/// transfer must stop, and nobody may take what came for the package.
std::vector<Finding> judgeCancel(const Snapshot& at, const Session& session);

} // namespace crash
