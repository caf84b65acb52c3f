#pragma once

#include <cstdio>
#include <string>

/// Files that a session writes, held until the process ends, so that their bytes can be taken
/// from them wherever they have been moved.
namespace crash {

/// A stream of C's library over a file that was just opened for writing and is taken over: each
/// transfer to the file and its close is an operation.
std::FILE* countWrites(std::FILE* opened, const std::string& what);

/// What a crash leaves of files that are not closed: nothing.
void cutOpenFiles();

/// What a failure of the power leaves of files that nobody has forced to the disk.
void zeroWrittenFiles();

} // namespace crash
