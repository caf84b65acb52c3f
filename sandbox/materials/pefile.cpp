#include "sandbox/materials/pefile.h"

#include "sandbox/materials/littleendian.h"
#include "sandbox/materials/versionresource.h"

namespace materials {

namespace {

constexpr std::uint32_t newHeaderOffset = 64;
constexpr std::uint32_t optionalHeaderSize = 240;
constexpr std::uint32_t headersSize = 0x200;
constexpr std::uint32_t fileAlignment = 0x200;
constexpr std::uint32_t sectionAlignment = 0x1000;
constexpr std::uint32_t resourceAddress = sectionAlignment;
constexpr std::uint32_t directoryCount = 16;
constexpr std::uint32_t resourceDirectory = 2;

constexpr std::uint32_t versionType = 16;
constexpr std::uint32_t versionName = 1;
constexpr std::uint32_t english = 0x0409;
constexpr std::uint32_t subdirectoryBit = 0x80000000;
constexpr std::uint32_t directorySize = 24; ///< with its one entry

std::uint32_t alignedUp(std::uint32_t size, std::uint32_t step) {
    return (size + step - 1) / step * step;
}

void appendDirectory(Bytes& bytes, std::uint32_t id, std::uint32_t target) {
    bytes.resize(bytes.size() + 12);
    appendWord(bytes, 0);
    appendWord(bytes, 1);
    appendLong(bytes, id);
    appendLong(bytes, target);
}

/// The resource section: type, name and language, one entry each, and the resource.
Bytes resourceSection(const Bytes& resource) {
    constexpr std::uint32_t dataEntry = 3 * directorySize;
    constexpr std::uint32_t data = dataEntry + 16;
    Bytes section;
    appendDirectory(section, versionType, directorySize | subdirectoryBit);
    appendDirectory(section, versionName, 2 * directorySize | subdirectoryBit);
    appendDirectory(section, english, dataEntry);
    appendLong(section, resourceAddress + data);
    appendLong(section, static_cast<std::uint32_t>(resource.size()));
    appendLong(section, 0);
    appendLong(section, 0);
    append(section, resource);
    return section;
}

void appendCoffHeader(Bytes& image) {
    appendText(image, std::string_view("PE\0\0", 4));
    appendWord(image, 0x8664); // x86-64
    appendWord(image, 1);      // sections
    image.resize(image.size() + 12);
    appendWord(image, optionalHeaderSize);
    appendWord(image, 0x2022); // executable image, large addresses, DLL
}

void appendOptionalHeader(Bytes& image, std::uint32_t sectionSize) {
    const std::uint32_t rawSize = alignedUp(sectionSize, fileAlignment);
    appendWord(image, 0x20B); // PE32+
    appendWord(image, 14);    // linker 14.0
    for (const std::uint32_t field : {0U, rawSize, 0U, 0U, sectionAlignment}) {
        appendLong(image, field);
    }
    appendLong(image, 0x80000000); // image base 0x180000000
    appendLong(image, 1);
    appendLong(image, sectionAlignment);
    appendLong(image, fileAlignment);
    for (const std::uint32_t version : {6U, 0U, 0U, 0U, 6U, 0U}) {
        appendWord(image, version); // system 6.0, image 0.0, subsystem 6.0
    }
    appendLong(image, 0);
    appendLong(image, resourceAddress + alignedUp(sectionSize, sectionAlignment));
    appendLong(image, headersSize);
    appendLong(image, 0);
    appendWord(image, 2);     // graphical subsystem
    appendWord(image, 0x160); // no fixed address, no execution of data
    for (const std::uint32_t size : {0x100000U, 0x1000U, 0x100000U, 0x1000U}) {
        appendLong(image, size); // stack and heap: reserved, committed
        appendLong(image, 0);
    }
    appendLong(image, 0);
    appendLong(image, directoryCount);
    for (std::uint32_t index = 0; index < directoryCount; ++index) {
        appendLong(image, index == resourceDirectory ? resourceAddress : 0);
        appendLong(image, index == resourceDirectory ? sectionSize : 0);
    }
}

void appendSectionHeader(Bytes& image, std::uint32_t sectionSize) {
    appendText(image, std::string_view(".rsrc\0\0\0", 8));
    appendLong(image, sectionSize);
    appendLong(image, resourceAddress);
    appendLong(image, alignedUp(sectionSize, fileAlignment));
    appendLong(image, headersSize);
    image.resize(image.size() + 12);
    appendLong(image, 0x40000040); // initialized data, readable
}

} // namespace

Bytes buildPeFile(const PeFile& file) {
    const Bytes section = resourceSection(buildVersionResource(file));
    const auto sectionSize = static_cast<std::uint32_t>(section.size());
    Bytes image(newHeaderOffset);
    putWord(image, 0, 0x5A4D);
    putWord(image, 60, newHeaderOffset);
    appendCoffHeader(image);
    appendOptionalHeader(image, sectionSize);
    appendSectionHeader(image, sectionSize);
    alignTo(image, headersSize);
    append(image, section);
    alignTo(image, fileAlignment);
    if (file.size > image.size()) {
        append(image, randomBytes(file.size - image.size(), file.seed));
    }
    return image;
}

} // namespace materials
