#include "platform/digest.h"

#include "platform/win32/windowsapi.h"

#include <bcrypt.h>

#include <algorithm>
#include <limits>

namespace platform {

struct Md5::State {
    State() {
        ::BCryptOpenAlgorithmProvider(&algorithm, BCRYPT_MD5_ALGORITHM, nullptr, 0);
        ::BCryptCreateHash(algorithm, &hash, nullptr, 0, nullptr, 0, 0);
    }
    ~State() {
        ::BCryptDestroyHash(hash);
        ::BCryptCloseAlgorithmProvider(algorithm, 0);
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    BCRYPT_ALG_HANDLE algorithm = nullptr;
    BCRYPT_HASH_HANDLE hash = nullptr;
};

Md5::Md5() : state(std::make_unique<State>()) {}

Md5::~Md5() = default;

void Md5::update(const void* data, std::size_t size) {
    // The interface takes 32-bit sizes and pointers that are not const.
    auto* bytes = const_cast<UCHAR*>(static_cast<const UCHAR*>(data));
    while (size > 0) {
        const std::size_t count = std::min<std::size_t>(size, std::numeric_limits<ULONG>::max());
        ::BCryptHashData(state->hash, bytes, static_cast<ULONG>(count), 0);
        bytes += count;
        size -= count;
    }
}

std::array<std::uint8_t, 16> Md5::finish() {
    std::array<std::uint8_t, 16> digest{};
    ::BCryptFinishHash(state->hash, digest.data(), static_cast<ULONG>(digest.size()), 0);
    return digest;
}

} // namespace platform
