#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "sandbox/cli/console.h"
#include "sandbox/common/folders.h"

/// A terminal in place of the client's user interface, on the notification centre of a host
/// that another xsandbox keeps running.
namespace sandbox {

/// Waits until the run's host is up. Throws std::runtime_error when it does not come.
void awaitHost(const Folders& folders, Console& console, std::chrono::seconds limit);

/// Does the words; see UiScript. False, after a message, when an answer does not come within
/// that time or is not what a user hopes for.
bool doWords(const Folders& folders, const std::vector<std::string>& words, Console& console,
             std::chrono::seconds limit);

/// Shows the channel and takes keys until the user quits or the host ends. Throws
/// std::runtime_error without a terminal.
void runUi(const Folders& folders, Console& console);

} // namespace sandbox
