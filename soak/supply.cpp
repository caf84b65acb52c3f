#include "soak/supply.h"

#include "sandbox/cli/filebytes.h"
#include "sandbox/materials/cabwriter.h"
#include "sandbox/materials/pefile.h"
#include "sandbox/materials/setuppackage.h"

namespace soak {
namespace {

using materials::Bytes;

constexpr std::size_t imageSize = 40'000;
constexpr std::size_t dataSize = 100'000;
constexpr std::size_t besideProgram = 500'000; ///< payload of a package
constexpr std::size_t generationsKept = 3;     ///< a transfer of an earlier one may be under way

Bytes image(std::size_t number, std::uint64_t seed) {
    return materials::buildPeFile({.version = {1, 3, static_cast<std::uint16_t>(number), 0},
                                   .size = imageSize,
                                   .seed = number * 10 + seed});
}

/// The files of earlier generations go, all but the last ones.
void prune(std::vector<std::vector<std::filesystem::path>>& generations) {
    while (generations.size() > generationsKept) {
        for (const auto& file : generations.front()) {
            std::filesystem::remove(file);
        }
        generations.erase(generations.begin());
    }
    generations.emplace_back();
}

} // namespace

Supply::Supply(std::filesystem::path storageFolder, const std::filesystem::path& setup)
    : storage(std::move(storageFolder)), program(sandbox::readBytes(setup)), versions{firstClient} {
    current.productId = "tulsar";
    current.channelId = "tulsar_upgrade_1.0";
    dataFile(1000, "patchlib0.dat");
    dataFile(1001, "patchlib1.dat");
}

void Supply::nextPacket() {
    prune(packetFiles);
    const std::size_t number = ++packetCount;
    current.version = "1.3." + std::to_string(number) + ".0";
    current.modules = {{"/components", "", current.version}};
    current.materials.clear();
    cabinet("core", "engine/core.dll", image(number, 1));
    material("base", "data/base.dat", materials::randomBytes(dataSize, number), "",
             R"((%process%="helper.exe" %param%="--new"))");
    material("first", "pair/first.dll", image(number, 2), "pair");
    material("second", "pair/second.dll", image(number, 3), "pair");
    material("held", "held.dll", image(number, 4));
}

void Supply::material(const std::string& name, const std::string& path, const Bytes& file,
                      const std::string& group, const std::string& exec) {
    sandbox::OfferedMaterial one;
    one.name = name;
    one.extends["non_cab"] = "1";
    if (!group.empty()) {
        one.extends["dependent"] = group;
    }
    if (!exec.empty()) {
        one.extends["exec"] = exec;
    }
    offer(std::move(one), path, file, file);
}

void Supply::cabinet(const std::string& name, const std::string& path, const Bytes& file) {
    sandbox::OfferedMaterial one;
    one.name = name;
    const Bytes packed = materials::buildCabinet(
        materials::CabMethod::mszip, {{name + ".txt", materials::randomBytes(1000, packetCount)},
                                      {path.substr(path.rfind('/') + 1), file}});
    offer(std::move(one), path, file, packed);
}

void Supply::offer(sandbox::OfferedMaterial material, const std::string& path, const Bytes& file,
                   const Bytes& stored) {
    material.id = "/material/" + material.name;
    material.moduleId = "/components";
    material.version = current.version;
    material.md5 = materials::md5Hex(stored);
    material.extends["file_path"] = path;
    material.extends["file_md5"] = materials::md5Hex(file);
    material.fileId = keep(material.name, stored, packetFiles.back());
    current.materials.push_back(std::move(material));
}

void Supply::nextPackage(bool fails) {
    prune(packageFiles);
    const std::string version = "1.4." + std::to_string(versions.size()) + ".1";
    const std::size_t size = program.size() + besideProgram;
    const Bytes bytes =
        materials::buildPackage(program, {version, fails, {}}, size, versions.size());
    sandbox::OfferedPackage& package = offered.package.emplace();
    package.version = version;
    package.md5 = materials::md5Hex(bytes);
    package.size = size;
    package.content = "Package " + version;
    package.fileId = keep("setup", bytes, packageFiles.back());
    versions.push_back(version);
}

void Supply::dataFile(int type, const char* name) {
    const Bytes bytes = materials::randomBytes(dataSize, static_cast<std::uint64_t>(type));
    sandbox::OfferedFile file;
    file.type = type;
    file.name = name;
    file.version = "1.3.0.1";
    file.md5 = materials::md5Hex(bytes);
    file.size = bytes.size();
    file.fileId = keep(name, bytes, dataFiles);
    offered.files.push_back(std::move(file));
}

std::string Supply::keep(const std::string& name, const Bytes& bytes, Stored& generation) {
    std::string id = name + "-" + materials::md5Hex(bytes).substr(0, 12);
    const std::filesystem::path file = storage / id;
    sandbox::writeBytes(file, bytes);
    generation.push_back(file);
    return id;
}

} // namespace soak
