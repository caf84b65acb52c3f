#pragma once

#include <string>

namespace platform {

/// Full client path of the host's executable, as the file functions take it.
/// Empty when the system does not tell, or when it does not fit in 259 characters.
std::string executablePath();

/// File name of the host's executable in UTF-8, taken from its wide path, so that it may
/// hold letters beyond the code page. Empty as for executablePath.
std::string executableName();

/// Shows title and text (a message box; stderr where there is none) and ends the
/// process with the exit code. No destructor and no exit handler runs.
[[noreturn]] void endProcess(const std::string& title, const std::string& text, int exitCode);

/// Ends the process at once and without a word, as the system's library does when a text
/// does not fit its buffer.
[[noreturn]] void abortProcess();

} // namespace platform
