#pragma once

#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

/// Facts about the running process. Any thread.
namespace sandbox {

/// The executable's own file; empty when the system does not tell.
std::filesystem::path executableFile();

/// What main was given, without the program's own name and in UTF-8.
std::vector<std::string> ownArguments(int count, char** arguments);

/// The system's number of the process.
long long processNumber();

/// The system's number of the calling thread.
unsigned long threadNumber();

std::tm localTime(std::time_t time);

} // namespace sandbox
