#include "sandbox/materials/imageversion.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <stdexcept>

namespace materials {

platform::FileVersion parsedVersion(const std::string& text) {
    platform::FileVersion version{};
    std::istringstream stream(text);
    char dot = '.';
    for (std::size_t i = 0; i < version.size(); ++i) {
        if ((i > 0 && !(stream >> dot)) || dot != '.' || !(stream >> version[i])) {
            throw std::runtime_error("a version of a PE file has four parts: " + text);
        }
    }
    return version;
}

Bytes withVersion(Bytes image, const std::string& version) {
    // Signature and structure version of VS_FIXEDFILEINFO; the file's version comes next.
    static constexpr std::array<std::uint8_t, 8> fixedInfo{0xBD, 0x04, 0xEF, 0xFE, 0, 0, 1, 0};
    const platform::FileVersion words = parsedVersion(version);
    const auto found = std::search(image.begin(), image.end(), fixedInfo.begin(), fixedInfo.end());
    if (image.end() - found < std::ptrdiff_t{2} * std::ssize(fixedInfo)) {
        throw std::runtime_error("the image has no version resource");
    }
    auto at = found + std::ssize(fixedInfo);
    for (const std::size_t word : {1U, 0U, 3U, 2U}) { // two numbers, each of two words
        *at++ = static_cast<std::uint8_t>(words[word] & 0xFF);
        *at++ = static_cast<std::uint8_t>(words[word] >> 8);
    }
    return image;
}

} // namespace materials
