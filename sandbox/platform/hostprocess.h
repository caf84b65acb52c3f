#pragma once

#include <ctime>
#include <filesystem>

/// Facts about the running process. Any thread.
namespace sandbox {

/// The executable's own file; empty when the system does not tell.
std::filesystem::path executableFile();

/// The system's number of the calling thread.
unsigned long threadNumber();

std::tm localTime(std::time_t time);

} // namespace sandbox
