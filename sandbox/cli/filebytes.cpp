#include "sandbox/cli/filebytes.h"

#include <array>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "platform/digest.h"
#include "sandbox/materials/cabwriter.h"
#include "sandbox/materials/imageversion.h"
#include "sandbox/materials/pefile.h"

namespace sandbox {
namespace {

struct MethodName {
    const char* name;
    materials::CabMethod method;
};

constexpr std::array<MethodName, 4> methods{{{"stored", materials::CabMethod::stored},
                                             {"mszip", materials::CabMethod::mszip},
                                             {"quantum", materials::CabMethod::quantum},
                                             {"lzx", materials::CabMethod::lzx}}};

/// FNV-1a, so that each name has bytes of its own under one seed.
std::uint64_t seedOf(std::uint64_t seed, const std::string& name) {
    std::uint64_t hash = 14695981039346656037ULL ^ seed;
    for (const char letter : name) {
        hash = (hash ^ static_cast<unsigned char>(letter)) * 1099511628211ULL;
    }
    return hash;
}

std::string hexOf(const std::array<std::uint8_t, 16>& digest) {
    static constexpr const char* digits = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : digest) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

} // namespace

Bytes bytesOf(const FilePlan& file, std::uint64_t seed, const std::string& name) {
    const std::uint64_t own = seedOf(seed, name);
    if (file.kind == kindPe) {
        materials::PeFile image;
        image.version = materials::parsedVersion(file.version);
        image.name = name;
        image.size = file.size;
        image.seed = own;
        return materials::buildPeFile(image);
    }
    if (file.kind == kindData) {
        return materials::randomBytes(file.size, own);
    }
    throw std::runtime_error("no bytes for a file of kind \"" + file.kind + "\"");
}

Bytes cabinetOf(const std::string& method,
                const std::vector<std::pair<std::string, Bytes>>& members) {
    for (const MethodName& known : methods) {
        if (method == known.name) {
            std::vector<materials::CabMember> packed;
            packed.reserve(members.size());
            for (const auto& [name, content] : members) {
                packed.push_back({name, content});
            }
            return materials::buildCabinet(known.method, packed);
        }
    }
    throw std::runtime_error("no cabinet method \"" + method + "\"");
}

std::string md5Of(const Bytes& bytes) {
    return materials::md5Hex(bytes);
}

std::string md5OfFile(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        return "";
    }
    platform::Md5 digest;
    std::vector<char> block(65536);
    while (stream.read(block.data(), static_cast<std::streamsize>(block.size())),
           stream.gcount() > 0) {
        digest.update(block.data(), static_cast<std::size_t>(stream.gcount()));
    }
    return hexOf(digest.finish());
}

Bytes readBytes(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw std::runtime_error("cannot read " + file.string());
    }
    return {std::istreambuf_iterator<char>(stream), {}};
}

void writeBytes(const std::filesystem::path& file, const Bytes& bytes) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream.write(reinterpret_cast<const char*>(bytes.data()),
                 static_cast<std::streamsize>(bytes.size()));
    if (!stream.flush()) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

} // namespace sandbox
