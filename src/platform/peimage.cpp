#include "platform/peimage.h"

#include <limits>
#include <utility>

namespace platform::image {

namespace {

constexpr std::uint16_t dosSignature = 0x5A4D;    ///< "MZ"
constexpr std::uint32_t peSignature = 0x00004550; ///< "PE", two zeros
constexpr std::size_t dosHeaderSize = 64;
constexpr std::size_t newHeaderField = 60;
constexpr std::size_t coffHeaderSize = 24; ///< with the signature before it
constexpr std::size_t sectionHeaderSize = 40;
constexpr std::size_t directoryHeaderSize = 16;
constexpr std::size_t directoryEntrySize = 8;
constexpr std::size_t dataEntrySize = 16;
constexpr std::uint16_t maxSections = 96;
constexpr std::size_t maxDirectoryEntries = 4096;
constexpr std::uint16_t pe32 = 0x10B;
constexpr std::uint16_t pe32Plus = 0x20B;
constexpr std::size_t resourceDirectory = 2;
constexpr std::size_t directoryRowSize = 8;
constexpr std::uint32_t versionType = 16;
constexpr std::uint32_t versionName = 1;
constexpr std::uint32_t subdirectoryBit = 0x80000000;
/// The resource tells its own length in 16 bits.
constexpr std::uint32_t maxResourceSize = 0xFFFF;
/// Of all languages together; they may share their bytes, so that 100 KB have 256 MB.
constexpr std::size_t maxResourceSizes = 1 << 20;

struct Section {
    std::uint32_t address = 0;
    std::uint32_t size = 0;
    std::uint32_t fileOffset = 0;
};

class PeImage {
public:
    explicit PeImage(std::FILE* openedFile) : file(openedFile) {}

    std::vector<Bytes> versionResources();

private:
    std::optional<Bytes> read(std::uint64_t offset, std::size_t size) const;
    bool readHeaders();
    std::optional<std::uint32_t> resourceAddressOf(const Bytes& optionalHeader) const;
    bool readSections(std::uint64_t offset, std::uint16_t count);

    /// `size` bytes at an address of the loaded image.
    std::optional<Bytes> readAt(std::uint32_t address, std::size_t size) const;

    /// The rows of a directory: id and what it points to.
    std::optional<Bytes> entriesOf(std::uint32_t directory) const;

    /// The directory that the one entry `id` of a directory points to.
    std::optional<std::uint32_t> subdirectoryOf(std::optional<std::uint32_t> directory,
                                                std::uint32_t id) const;

    std::optional<Bytes> resourceOf(std::uint32_t entry) const;

    std::FILE* file;
    std::uint32_t resources = 0;
    std::vector<Section> sections;
};

std::optional<Bytes> PeImage::read(std::uint64_t offset, std::size_t size) const {
    Bytes block(size);
    if (offset > std::uint64_t{std::numeric_limits<long>::max()} ||
        std::fseek(file, static_cast<long>(offset), SEEK_SET) != 0 ||
        std::fread(block.data(), 1, size, file) != size) {
        return std::nullopt;
    }
    return block;
}

bool PeImage::readHeaders() {
    const auto dosHeader = read(0, dosHeaderSize);
    if (!dosHeader || wordAt(*dosHeader, 0) != dosSignature) {
        return false;
    }
    const std::uint64_t start = *longAt(*dosHeader, newHeaderField);
    const auto coffHeader = read(start, coffHeaderSize);
    if (!coffHeader || longAt(*coffHeader, 0) != peSignature) {
        return false;
    }
    const std::uint16_t optionalSize = *wordAt(*coffHeader, 20);
    const auto optionalHeader = read(start + coffHeaderSize, optionalSize);
    const auto address = optionalHeader ? resourceAddressOf(*optionalHeader) : std::nullopt;
    resources = address.value_or(0);
    return resources != 0 &&
           readSections(start + coffHeaderSize + optionalSize, *wordAt(*coffHeader, 6));
}

std::optional<std::uint32_t> PeImage::resourceAddressOf(const Bytes& optionalHeader) const {
    const std::uint16_t magic = wordAt(optionalHeader, 0).value_or(0);
    if (magic != pe32 && magic != pe32Plus) {
        return std::nullopt;
    }
    const std::size_t directories = magic == pe32 ? 96 : 112;
    if (longAt(optionalHeader, directories - 4).value_or(0) <= resourceDirectory) {
        return std::nullopt;
    }
    return longAt(optionalHeader, directories + resourceDirectory * directoryRowSize);
}

bool PeImage::readSections(std::uint64_t offset, std::uint16_t count) {
    if (count > maxSections) {
        return false;
    }
    const auto headers = read(offset, count * sectionHeaderSize);
    for (std::size_t at = 0; headers && at < headers->size(); at += sectionHeaderSize) {
        sections.push_back(
            {*longAt(*headers, at + 12), *longAt(*headers, at + 16), *longAt(*headers, at + 20)});
    }
    return headers.has_value();
}

std::optional<Bytes> PeImage::readAt(std::uint32_t address, std::size_t size) const {
    for (const Section& section : sections) {
        if (address >= section.address && address - section.address < section.size) {
            const std::uint32_t within = address - section.address;
            return size <= section.size - within
                       ? read(std::uint64_t{section.fileOffset} + within, size)
                       : std::nullopt;
        }
    }
    return std::nullopt;
}

std::optional<Bytes> PeImage::entriesOf(std::uint32_t directory) const {
    const auto header = readAt(resources + directory, directoryHeaderSize);
    if (!header) {
        return std::nullopt;
    }
    const std::size_t count = std::size_t{*wordAt(*header, 12)} + *wordAt(*header, 14);
    const std::uint32_t first = resources + directory + std::uint32_t{directoryHeaderSize};
    return count <= maxDirectoryEntries ? readAt(first, count * directoryEntrySize) : std::nullopt;
}

std::optional<std::uint32_t> PeImage::subdirectoryOf(std::optional<std::uint32_t> directory,
                                                     std::uint32_t id) const {
    std::optional<std::uint32_t> found;
    const auto entries = directory ? entriesOf(*directory) : std::nullopt;
    for (std::size_t at = 0; entries && at < entries->size(); at += directoryEntrySize) {
        if (longAt(*entries, at) == id) {
            const std::uint32_t target = *longAt(*entries, at + 4);
            if (found || !(target & subdirectoryBit)) {
                return std::nullopt;
            }
            found = target & ~subdirectoryBit;
        }
    }
    return found;
}

std::optional<Bytes> PeImage::resourceOf(std::uint32_t entry) const {
    const auto data =
        (entry & subdirectoryBit) != 0 ? std::nullopt : readAt(resources + entry, dataEntrySize);
    return data && *longAt(*data, 4) <= maxResourceSize
               ? readAt(*longAt(*data, 0), *longAt(*data, 4))
               : std::nullopt;
}

std::vector<Bytes> PeImage::versionResources() {
    std::vector<Bytes> found;
    if (!readHeaders()) {
        return found;
    }
    const auto name = subdirectoryOf(subdirectoryOf(0, versionType), versionName);
    const auto languages = name ? entriesOf(*name) : std::nullopt;
    std::size_t sizes = 0;
    for (std::size_t at = 0; languages && at < languages->size(); at += directoryEntrySize) {
        auto resource = resourceOf(*longAt(*languages, at + 4));
        sizes += resource ? resource->size() : 0;
        if (!resource || sizes > maxResourceSizes) {
            return {};
        }
        found.push_back(*std::move(resource));
    }
    return found;
}

} // namespace

std::optional<std::uint16_t> wordAt(const Bytes& block, std::size_t at) {
    if (block.size() < 2 || at > block.size() - 2) {
        return std::nullopt;
    }
    return static_cast<std::uint16_t>(block[at] | block[at + 1] << 8);
}

std::optional<std::uint32_t> longAt(const Bytes& block, std::size_t at) {
    const auto low = wordAt(block, at);
    const auto high = wordAt(block, at + 2);
    if (!low || !high) {
        return std::nullopt;
    }
    return *low | std::uint32_t{*high} << 16;
}

std::vector<Bytes> readVersionResources(std::FILE* image) {
    return PeImage(image).versionResources();
}

} // namespace platform::image
