#include "sandbox/cli/verbs/number.h"

#include <CLI/CLI.hpp>
#include <charconv>

namespace sandbox {

void takeNumber(CLI::Option* option, std::uint32_t least, std::uint32_t most) {
    option->type_name("N")->check([least, most](const std::string& text) {
        std::uint32_t number = 0;
        const char* const end = text.data() + text.size();
        const auto read = std::from_chars(text.data(), end, number);
        const bool isNumber = read.ec == std::errc() && read.ptr == end;
        return isNumber && number >= least && number <= most
                   ? std::string()
                   : "a number from " + std::to_string(least) + " to " + std::to_string(most) +
                         ", not \"" + text + "\"";
    });
}

} // namespace sandbox
