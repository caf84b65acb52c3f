#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace platform {

/// MD5 (RFC 1321) over blocks. One thread at a time.
class Md5 {
public:
    Md5();
    ~Md5();
    Md5(const Md5&) = delete;
    Md5& operator=(const Md5&) = delete;

    void update(const void* data, std::size_t size);

    /// Ends the digest; no update may follow.
    std::array<std::uint8_t, 16> finish();

private:
    struct State;
    std::unique_ptr<State> state;
};

} // namespace platform
