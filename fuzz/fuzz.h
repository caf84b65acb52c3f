#pragma once

#include <string>
#include <vector>

/// What the targets share. A target takes bytes that anybody may have made and aborts when a
/// promise of the code under test does not hold. It keeps nothing from one input to the next
/// but folders on the disk. One thread.
namespace fuzz {

struct Target {
    const char* name;
    void (*run)(const std::string& input);
};

/// The targets of this program.
std::vector<Target>& targets();

/// Ends the process as crashed when a promise does not hold; `promise` says which, and `seen`
/// what was there instead.
void require(bool holds, const std::string& promise, const std::string& seen = {});

/// Cuts the first line off `rest`, without its line feed. Inputs of several parts are lines, so
/// that a seed can be read.
std::string takeLine(std::string& rest);

/// `text` up to its first zero byte, as interfaces of the client hand it on.
std::string zeroTerminated(const std::string& text);

struct Registration {
    explicit Registration(Target target) { targets().push_back(target); }
};

} // namespace fuzz

/// Begins a target, whose body sees its bytes as `input`.
#define FUZZ_TARGET(name)                                                                          \
    static void run_##name(const std::string& input);                                              \
    static const fuzz::Registration registration_##name{{#name, run_##name}};                      \
    static void run_##name(const std::string& input)
