#include "sandbox/materials/bitwriter.h"
#include "sandbox/materials/frameencoder.h"
#include "sandbox/materials/littleendian.h"

#include <algorithm>

namespace materials {

namespace {

constexpr unsigned windowBits = 15;
constexpr std::uint16_t lzxType = 3 | windowBits << 8;

constexpr std::uint32_t verbatimBlock = 1;
constexpr std::uint32_t uncompressedBlock = 3;

constexpr std::uint32_t literalCount = 256;
constexpr std::uint32_t matchSymbolCount = 30 * 8; ///< of a window of 2^15 bytes
constexpr std::uint32_t lengthSymbolCount = 249;
constexpr unsigned literalLength = 8;

constexpr std::uint32_t pretreeSize = 20;
/// Pretree symbols: the old length minus the new one, modulo 17; or a long run of zeros.
constexpr std::uint32_t sameLength = 0;
constexpr std::uint32_t fromZeroToEight = 9;
constexpr std::uint32_t zeroRun = 18;
constexpr std::uint32_t zeroRunMin = 20;
constexpr std::uint32_t zeroRunMax = 51;

/// LZX without matches: frames by turns as a verbatim block, in which every byte has a
/// code of eight bits, and as an uncompressed block. Source: MS-PATCH, "LZX Format".
class LzxEncoder : public FrameEncoder {
public:
    std::uint16_t type() const override { return lzxType; }

    Bytes encode(std::span<const std::uint8_t> frame) override {
        const bool isFirst = frameIndex == 0;
        if (isFirst) {
            bits.put(0, 1); // no translation of x86 calls
        }
        const bool isVerbatim = frameIndex++ % 2 == 0;
        bits.put(isVerbatim ? verbatimBlock : uncompressedBlock, 3);
        bits.put(static_cast<std::uint32_t>(frame.size()), 24);
        Bytes block = isVerbatim ? verbatim(frame, isFirst) : takeWords();
        if (!isVerbatim) {
            for (int offset = 0; offset < 3; ++offset) {
                appendLong(block, 1); // repeated offsets, which nothing uses
            }
            block.insert(block.end(), frame.begin(), frame.end());
            alignTo(block, 2);
        }
        return block;
    }

private:
    Bytes verbatim(std::span<const std::uint8_t> frame, bool isFirst) {
        const std::uint32_t literal = isFirst ? fromZeroToEight : sameLength;
        putPretree(literal);
        for (std::uint32_t symbol = 0; symbol < literalCount; ++symbol) {
            bits.put(0, 1);
        }
        for (const std::uint32_t count : {matchSymbolCount, lengthSymbolCount}) {
            putPretree(literal);
            putZeros(count);
        }
        for (const std::uint8_t byte : frame) {
            bits.put(byte, literalLength);
        }
        return takeWords();
    }

    /// A pretree of two symbols with one bit each: `literal` is 0, a run of zeros is 1.
    void putPretree(std::uint32_t literal) {
        for (std::uint32_t symbol = 0; symbol < pretreeSize; ++symbol) {
            bits.put(symbol == literal || symbol == zeroRun ? 1 : 0, 4);
        }
    }

    void putZeros(std::uint32_t count) {
        while (count > 0) {
            // What remains has to be long enough for a run of its own.
            const std::uint32_t run =
                count <= zeroRunMax ? count : std::min(zeroRunMax, count - zeroRunMin);
            bits.put(1, 1);
            bits.put(run - zeroRunMin, 5);
            count -= run;
        }
    }

    /// The bits so far in words of 16, least significant byte first.
    Bytes takeWords() {
        Bytes words = bits.take(16);
        for (std::size_t at = 0; at < words.size(); at += 2) {
            std::swap(words[at], words[at + 1]);
        }
        return words;
    }

    BitWriter bits;
    std::size_t frameIndex = 0;
};

} // namespace

std::unique_ptr<FrameEncoder> makeLzxEncoder() {
    return std::make_unique<LzxEncoder>();
}

} // namespace materials
