#pragma once

#include <cstdint>

namespace CLI {
class Option;
}

namespace sandbox {

/// Refuses what is no whole number of that range, in words for people. To be said of every option
/// that is one: the library takes "-1" for the largest number where there are no signs.
void takeNumber(CLI::Option* option, std::uint32_t least, std::uint32_t most);

} // namespace sandbox
