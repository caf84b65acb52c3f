#pragma once

#include <string>
#include <vector>

/// Texts that lead out of the folder that they are appended to, or to no file at all. Plain
/// values; any thread.
namespace hostile {

struct BadName {
    std::string what; ///< for people
    std::string name;
};

/// No part of a path: the name of a file itself is bad, or the way to it.
std::vector<BadName> badNames();

/// Of more characters than any system takes, but leading nowhere else.
std::string overlongName();

} // namespace hostile
