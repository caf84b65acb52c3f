#pragma once

#include "sandbox/materials/content.h"

#include <utility>

namespace materials {

/// Bits packed into bytes, the most significant first.
class BitWriter {
public:
    void put(std::uint32_t value, unsigned count) {
        while (count > 0) {
            --count;
            pending = static_cast<std::uint8_t>(pending * 2U + (value >> count & 1));
            if (++filled == 8) {
                bytes.push_back(pending);
                filled = 0;
            }
        }
    }

    /// Zero bits up to a multiple of `step` bits; all that was written so far.
    Bytes take(std::size_t step) {
        while ((bytes.size() * 8 + filled) % step != 0) {
            put(0, 1);
        }
        return std::exchange(bytes, {});
    }

private:
    Bytes bytes;
    std::uint8_t pending = 0;
    unsigned filled = 0;
};

} // namespace materials
