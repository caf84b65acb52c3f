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

/// A word that was done.
struct WordDone {
    std::string word;
    std::string fault; ///< why its answer is not what a user hopes for; empty for nothing
};

/// Does the words up to the first with a fault, which is told; see UiScript. Each answer may
/// take `limit` from its command's arrival on.
std::vector<WordDone> doWords(const Folders& folders, const std::vector<std::string>& words,
                              Console& console, std::chrono::seconds limit);

/// Shows the channel and takes keys until the user quits or the host ends. Throws
/// std::runtime_error without a terminal.
void runUi(const Folders& folders, Console& console);

} // namespace sandbox
