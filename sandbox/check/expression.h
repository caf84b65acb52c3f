#pragma once

#include <string>

#include "sandbox/check/located.h"

namespace sandbox::check {

inline constexpr const char* clientTag = "%appver%";
inline constexpr const char* systemTag = "%sysver%";

/// A condition as the client reads it: clauses joined by "&&", each the tag, one of >= > <= < ==
/// and a version in double quotes, with nothing between and around. What the client would pass
/// over without a word is a mistake here.
void checkExpression(const Located& expression, const std::string& parameter,
                     const std::string& tag, Mistakes& mistakes);

/// The one system version of parameter "osver": three numbers, compared for equality.
void checkSystemVersion(const Located& version, Mistakes& mistakes);

} // namespace sandbox::check
