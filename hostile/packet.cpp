#include "hostile/packet.h"

#include "host/settings.h"
#include "hostile/cabinets.h"
#include "sandbox/materials/pefile.h"

namespace hostile {

namespace {

/// Of the second packet: newer than whatever a broken image says of itself.
constexpr const char* soundVersion = "65535.65535.65535.65535";

void add(crash::Packet& packet, const Offered& offered, const std::string& id) {
    sandbox::OfferedMaterial material;
    material.id = material.fileId = id;
    material.moduleId = "/module";
    material.version = packet.offer.version;
    material.md5 = offered.md5;
    material.extends["file_path"] = offered.filePath;
    material.extends["file_md5"] = offered.fileMd5;
    if (!offered.packed) {
        material.extends["non_cab"] = "1";
    }
    packet.storage[id] = textOf(offered.stored);
    packet.offer.materials.push_back(std::move(material));
}

/// One side of each pair, and the file beside them.
void offer(crash::Packet& packet, const std::vector<Pair>& pairs, Offered Pair::*side) {
    packet.offer.materials.clear();
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        add(packet, pairs[i].*side, "m" + std::to_string(i));
    }
    add(packet, plainly(nearPath, nearImage(2)), "near");
}

} // namespace

std::string textOf(const Bytes& bytes) {
    return {bytes.begin(), bytes.end()};
}

Bytes nearImage(std::uint16_t major) {
    return materials::buildPeFile({.version = {major, 0, 0, 0}, .size = 1500, .seed = major});
}

Offered plainly(const std::string& path, const Bytes& content) {
    const std::string md5 = materials::md5Hex(content);
    return {path, md5, md5, content};
}

Pair pairOf(const Bytes& cabinet, const std::string& folder) {
    const std::string path = folder + "\\" + wantedName;
    const std::string md5 = materials::md5Hex(wantedFile());
    // Rows of one run that name the same cabinet would take it from each other.
    Bytes sound = written(soundCabinet());
    sound.insert(sound.end(), folder.begin(), folder.end());
    return {path,
            nearImage(1),
            {path, materials::md5Hex(cabinet), md5, cabinet, true},
            {path, materials::md5Hex(sound), md5, sound, true},
            wantedFile(),
            wantedFile()};
}

crash::Packet packetFor(const std::vector<Pair>& pairs) {
    crash::Packet packet;
    packet.name = "hostile";
    packet.offer.productId = "product";
    packet.offer.channelId = "channel";
    packet.offer.version = crash::newVersion;
    packet.stored.versions[crash::versionKey] = crash::oldVersion;
    packet.stored.numbers[settingkeys::kelvarLastCheckTime] = 1;
    packet.files[hostPath] = "the host";
    packet.files[nearPath] = textOf(nearImage(1));
    for (const Pair& pair : pairs) {
        packet.files[pair.path] = textOf(pair.before);
    }
    offer(packet, pairs, &Pair::hostile);
    return packet;
}

void offerSound(crash::Packet& packet, const std::vector<Pair>& pairs) {
    packet.offer.version = soundVersion;
    offer(packet, pairs, &Pair::sound);
}

} // namespace hostile
