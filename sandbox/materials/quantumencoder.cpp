#include "sandbox/materials/bitwriter.h"
#include "sandbox/materials/frameencoder.h"

#include <algorithm>
#include <array>
#include <utility>

namespace materials {

namespace {

constexpr unsigned level = 7;
constexpr unsigned windowBits = 18;
constexpr std::uint16_t quantumType = 2 | level << 4 | windowBits << 8;

/// An adaptive model: symbols with cumulative frequencies in falling order. The decoder
/// makes the same changes after every symbol.
class Model {
public:
    Model(std::uint32_t first, std::size_t count) : entries(count + 1) {
        for (std::size_t index = 0; index <= count; ++index) {
            entries[index] = {first + static_cast<std::uint32_t>(index),
                              static_cast<std::uint32_t>(count - index)};
        }
    }

    struct Share {
        std::uint32_t low;
        std::uint32_t high;
        std::uint32_t total;
    };

    /// The part of the range that the symbol has, before it is counted.
    Share use(std::uint32_t symbol) {
        std::size_t index = 0;
        while (entries[index].symbol != symbol) {
            ++index;
        }
        const Share share{entries[index + 1].cumulated, entries[index].cumulated,
                          entries[0].cumulated};
        for (std::size_t counted = 0; counted <= index; ++counted) {
            entries[counted].cumulated += increment;
        }
        if (entries[0].cumulated > limit) {
            rescale();
        }
        return share;
    }

private:
    struct Entry {
        std::uint32_t symbol = 0;
        std::uint32_t cumulated = 0;
    };

    static constexpr std::uint32_t increment = 8;
    static constexpr std::uint32_t limit = 3800;
    static constexpr int halvingsAtStart = 4;
    static constexpr int halvingsBetweenSorts = 50;

    void rescale() {
        if (--halvingsLeft > 0) {
            halve();
        } else {
            halvingsLeft = halvingsBetweenSorts;
            sortByFrequency();
        }
    }

    void halve() {
        for (std::size_t index = entries.size() - 1; index-- > 0;) {
            entries[index].cumulated =
                std::max(entries[index].cumulated / 2, entries[index + 1].cumulated + 1);
        }
    }

    void sortByFrequency() {
        const std::size_t count = entries.size() - 1;
        for (std::size_t index = 0; index < count; ++index) {
            entries[index].cumulated =
                (entries[index].cumulated - entries[index + 1].cumulated + 1) / 2;
        }
        // The order of equal frequencies is part of the format: exchange, not a stable sort.
        for (std::size_t index = 0; index < count; ++index) {
            for (std::size_t other = index + 1; other < count; ++other) {
                if (entries[index].cumulated < entries[other].cumulated) {
                    std::swap(entries[index], entries[other]);
                }
            }
        }
        for (std::size_t index = count; index-- > 0;) {
            entries[index].cumulated += entries[index + 1].cumulated;
        }
    }

    std::vector<Entry> entries;
    int halvingsLeft = halvingsAtStart;
};

/// The range coder of one frame, in 16 bits.
class RangeCoder {
public:
    void put(const Model::Share& share) {
        const std::uint32_t range = high - low + 1;
        high = low + share.high * range / share.total - 1;
        low += share.low * range / share.total;
        for (;;) {
            if ((low & topBit) == (high & topBit)) {
                putBit(low >> 15 & 1);
            } else if ((low & secondBit) != 0 && (high & secondBit) == 0) {
                // The bounds meet around the middle: the bit is known with the next one.
                ++undecided;
                low &= secondBit - 1;
                high |= secondBit;
            } else {
                return;
            }
            low = low << 1 & 0xFFFF;
            high = (high << 1 & 0xFFFF) | 1;
        }
    }

    /// The whole frame: the decoder has read exactly these bits after its last symbol.
    Bytes finish() {
        putBit(low >> 15 & 1);
        bits.put(low, 15);
        return bits.take(8);
    }

private:
    static constexpr std::uint32_t topBit = 0x8000;
    static constexpr std::uint32_t secondBit = 0x4000;

    void putBit(std::uint32_t bit) {
        bits.put(bit, 1);
        for (; undecided > 0; --undecided) {
            bits.put(bit ^ 1, 1);
        }
    }

    BitWriter bits;
    std::uint32_t low = 0;
    std::uint32_t high = 0xFFFF;
    std::uint32_t undecided = 0;
};

/// Quantum without matches: for each byte its quarter of the alphabet and its place in
/// it. Source: M. Russotto, "Quantum compression in cabinet files".
class QuantumEncoder : public FrameEncoder {
public:
    std::uint16_t type() const override { return quantumType; }

    Bytes encode(std::span<const std::uint8_t> frame) override {
        RangeCoder coder;
        for (const std::uint8_t byte : frame) {
            const std::uint32_t quarter = byte / quarterSize;
            coder.put(selectors.use(quarter));
            coder.put(literals[quarter].use(byte));
        }
        return coder.finish();
    }

private:
    static constexpr std::uint32_t quarterSize = 64;
    static constexpr std::size_t selectorCount = 7;

    Model selectors{0, selectorCount};
    std::array<Model, 4> literals{Model(0, quarterSize), Model(quarterSize, quarterSize),
                                  Model(2 * quarterSize, quarterSize),
                                  Model(3 * quarterSize, quarterSize)};
};

} // namespace

std::unique_ptr<FrameEncoder> makeQuantumEncoder() {
    return std::make_unique<QuantumEncoder>();
}

} // namespace materials
