#pragma once

#include "sandbox/materials/cabwriter.h"

#include <memory>
#include <span>

namespace materials {

/// Uncompressed bytes of a frame; only the last one of a folder may be shorter.
inline constexpr std::size_t frameSize = 32768;

/// Compresses the stream of one cabinet folder, frame by frame. Keeps what the frames
/// share; one object a folder, one thread.
class FrameEncoder {
public:
    virtual ~FrameEncoder() = default;

    /// The folder's typeCompress field.
    virtual std::uint16_t type() const = 0;

    /// The data of the frame's block.
    virtual Bytes encode(std::span<const std::uint8_t> frame) = 0;
};

std::unique_ptr<FrameEncoder> makeMszipEncoder();
std::unique_ptr<FrameEncoder> makeLzxEncoder();
std::unique_ptr<FrameEncoder> makeQuantumEncoder();

} // namespace materials
