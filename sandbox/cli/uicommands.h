#pragma once

#include <optional>
#include <string>

#include "sandbox/common/folders.h"

/// What the user interface tells the package channel.
namespace sandbox {

/// The code of "check", "download", "install", "ignore" or "cancel"; nothing for another word.
std::optional<int> commandOf(const std::string& word);

/// The word of a command's code; empty for another code.
std::string wordOfCommand(int code);

/// All of them, for messages.
std::string wordsOfCommands();

/// The same with what each asks for, a line each.
std::string helpOfCommands();

/// Sends a command into the notification centre of the run's host, which may start later;
/// it arrives once, and commands arrive in their order. Any process. Throws
/// std::runtime_error when the file of the commands cannot be written.
void sendCommand(const Folders& folders, int code);

/// Forgets what was sent and has not arrived.
void dropCommands(const Folders& folders);

} // namespace sandbox
