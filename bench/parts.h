#pragma once

#include <string>

/// What the measurements of parts share.
namespace parts {

/// The client's home folder, which xnbase.dll answers; new and empty for this process.
const std::string& home();

} // namespace parts
