#pragma once

#include <chrono>
#include <memory>
#include <optional>

namespace sandbox {

/// Single keys of the terminal at standard input, without echo, while the object lives. One
/// at a time, one thread. On posix only.
class Keyboard {
public:
    Keyboard();
    /// The terminal is as it was before.
    ~Keyboard();
    Keyboard(const Keyboard&) = delete;
    Keyboard& operator=(const Keyboard&) = delete;

    /// False when standard input is no terminal; there are no keys then.
    bool isThere() const { return before != nullptr; }

    /// Blocks until a key comes, at most for that time. The end of the terminal is
    /// `endOfKeys`.
    std::optional<char> next(std::chrono::milliseconds limit);

    static constexpr char endOfKeys = '\x04';

private:
    struct Settings;
    std::unique_ptr<Settings> before;
};

} // namespace sandbox
