#include "sandbox/materials/frameencoder.h"
#include "sandbox/materials/littleendian.h"

#include <stdexcept>
#include <zlib.h>

namespace materials {

namespace {

constexpr std::uint16_t mszipType = 1;
/// A block may not be longer (MS-MCI, section 2.1).
constexpr std::size_t maxBlockSize = frameSize + 12;
constexpr int rawWindowBits = -15;
/// Large symbol buffer: fewer stored blocks, so that noise stays within the limit.
constexpr int memoryLevel = 9;

/// MSZIP: "CK" and a deflate stream of its own for each frame, with the frame before as
/// its dictionary. Source: MS-MCI, "MSZIP".
class MszipEncoder : public FrameEncoder {
public:
    MszipEncoder() {
        if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, rawWindowBits, memoryLevel,
                         Z_DEFAULT_STRATEGY) != Z_OK) {
            throw std::bad_alloc();
        }
    }
    ~MszipEncoder() override { deflateEnd(&stream); }
    MszipEncoder(const MszipEncoder&) = delete;
    MszipEncoder& operator=(const MszipEncoder&) = delete;

    std::uint16_t type() const override { return mszipType; }

    Bytes encode(std::span<const std::uint8_t> frame) override {
        deflateReset(&stream);
        if (!history.empty() && deflateSetDictionary(&stream, history.data(),
                                                     static_cast<uInt>(history.size())) != Z_OK) {
            throw std::logic_error("a frame is no dictionary for the next one");
        }
        history.assign(frame.begin(), frame.end());
        Bytes block{'C', 'K'};
        block.resize(maxBlockSize);
        stream.next_in = history.data();
        stream.avail_in = static_cast<uInt>(history.size());
        stream.next_out = block.data() + 2;
        stream.avail_out = static_cast<uInt>(block.size() - 2);
        if (deflate(&stream, Z_FINISH) != Z_STREAM_END) {
            throw std::length_error("a deflated frame does not fit into its block");
        }
        block.resize(block.size() - stream.avail_out);
        return block;
    }

private:
    z_stream stream{};
    Bytes history;
};

} // namespace

std::unique_ptr<FrameEncoder> makeMszipEncoder() {
    return std::make_unique<MszipEncoder>();
}

} // namespace materials
