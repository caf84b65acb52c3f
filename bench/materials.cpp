#include "bench/offer.h"

#include <algorithm>
#include <fstream>

#include "sandbox/materials/cabwriter.h"

namespace bench {
namespace {

using materials::Bytes;

constexpr std::size_t smallest = 10'000;
constexpr std::size_t largest = 500'000;
constexpr std::size_t great = 5'000'000;
constexpr std::size_t greatStep = 100;
constexpr std::size_t sizeStride = 7919; // primes: sizes and cabinets come in no order
constexpr std::size_t cabinetStride = 37;
constexpr std::size_t cabinetsInHundred = 70;
constexpr std::size_t filesInFolder = 50;

std::string numbered(const std::string& prefix, std::size_t number) {
    const std::string digits = std::to_string(number);
    return prefix + std::string(5 - std::min<std::size_t>(digits.size(), 5), '0') + digits;
}

/// Many small files and few large ones, as in a client's folder.
std::size_t sizeOf(std::size_t index) {
    if (index % greatStep == greatStep - 1) {
        return great;
    }
    const double share = static_cast<double>(index * sizeStride % 1000) / 1000;
    return smallest + static_cast<std::size_t>((largest - smallest) * share * share * share);
}

/// Bytes of which about a third comes again, as in programs and their data.
Bytes contentOf(std::size_t size, std::size_t seed) {
    constexpr std::size_t piece = 96;
    Bytes bytes = materials::randomBytes(size, seed);
    for (std::size_t at = 3 * piece; at + piece <= size; at += 3 * piece) {
        const std::size_t from = at - 3 * piece + bytes[at] % piece;
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(from), piece,
                    bytes.begin() + static_cast<std::ptrdiff_t>(at));
    }
    return bytes;
}

Material nameOf(std::size_t index) {
    Material material;
    material.path = numbered("components/part", index / filesInFolder) + "/" +
                    numbered("module", index) + ".dat";
    material.isCabinet = index * cabinetStride % 100 < cabinetsInHundred;
    return material;
}

Material make(std::size_t index, std::size_t divisor, const std::filesystem::path& storage) {
    constexpr materials::CabMethod methods[] = {
        materials::CabMethod::mszip, materials::CabMethod::lzx, materials::CabMethod::stored};
    Material material = nameOf(index);
    Bytes bytes = contentOf(sizeOf(index) / divisor, index + 1);
    material.fileMd5 = materials::md5Hex(bytes);
    if (material.isCabinet) {
        const std::string name = material.path.substr(material.path.rfind('/') + 1);
        bytes = materials::buildCabinet(methods[index % std::size(methods)],
                                        {{name, std::move(bytes)}});
    }
    material.md5 = materials::md5Hex(bytes);
    material.id = numbered("m", index) + "-" + material.md5.substr(0, 12);
    std::ofstream(storage / material.id, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    return material;
}

std::vector<Material> readList(const std::filesystem::path& file) {
    std::vector<Material> found;
    std::ifstream stream(file);
    Material material;
    std::string kind;
    while (stream >> material.id >> material.md5 >> material.fileMd5 >> kind >> material.path) {
        material.isCabinet = kind == "cab";
        found.push_back(material);
    }
    return found;
}

} // namespace

std::vector<Material> makeMaterials(const std::filesystem::path& folder, std::size_t count,
                                    std::size_t divisor) {
    const std::filesystem::path list = folder / "list";
    std::vector<Material> made = readList(list);
    if (made.size() == count) {
        return made;
    }
    made.clear();
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder / "storage");
    std::string lines;
    for (std::size_t i = 0; i < count; ++i) {
        const Material& material = made.emplace_back(make(i, divisor, folder / "storage"));
        lines += material.id + ' ' + material.md5 + ' ' + material.fileMd5 + ' ' +
                 (material.isCabinet ? "cab" : "plain") + ' ' + material.path + '\n';
    }
    std::ofstream(list, std::ios::binary) << lines; // last: a half-made folder has none
    return made;
}

std::vector<Material> unstoredMaterials(std::size_t count) {
    std::vector<Material> rows;
    for (std::size_t i = 0; i < count; ++i) {
        Material& row = rows.emplace_back(nameOf(i));
        const std::string name = numbered("m", i);
        row.md5 = materials::md5Hex(Bytes(name.begin(), name.end()));
        row.fileMd5 = row.md5;
        row.id = name + "-" + row.md5.substr(0, 12);
    }
    return rows;
}

} // namespace bench
