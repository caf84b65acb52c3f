#pragma once

#include "platform/lasterror.h"

#include <optional>
#include <string>
#include <string_view>

/// The way from client paths to paths of this system. Any thread.
namespace platform::posix {

/// `path` with "/" as separator and, where a name is not there as it is spelled, the
/// name that differs from it in the case of ASCII letters only (the first in byte order).
/// Names that are not there at all stay as they are.
std::string resolvePath(const std::string& path);

/// resolvePath for a path of the file functions: nothing, and errorFilenameTooLong, when
/// the client's system would not take its length.
std::optional<std::string> mapPath(const std::string& path);

/// `path` as an absolute client path, without repeated separators.
std::string absoluteClientPath(const std::string& path);

/// The folder of the host's executable as a client path; empty when it is not known.
std::string hostFolder();

/// The client's error number for an errno value of a call on `systemPath`.
Error errorOf(int number, const std::string& systemPath);

/// Notes the error number of errno for `systemPath`; always false.
bool failFromErrno(const std::string& systemPath);

/// Notes `error`; always false.
bool fail(Error error);

} // namespace platform::posix
