#include "crash/healthytrial.h"

#include <algorithm>

#include "crash/evidence.h"

namespace crash {

const Target& targetOf(const Packet& packet, const std::string& path) {
    const auto& targets = packet.targets;
    return *std::find_if(targets.begin(), targets.end(),
                         [&](const Target& target) { return target.path == path; });
}

Packet packetOfAll() {
    Packet packet;
    packet.targets = {
        {.path = plain, .before = "p1", .after = "p2", .program = "plain.exe"},
        {.path = fresh, .after = "n2", .isImage = false},
        {.path = placed, .before = "g1", .after = "g2", .group = "group"},
        {.path = "group\\bad.dll", .before = "b1", .after = "b2", .group = "group"},
        {.path = "wait\\idle.dll", .before = "i1", .after = "i2", .group = "wait"},
        {.path = busy, .before = "u1", .after = "u2", .group = "wait"},
    };
    packet.targets[3].isRefused = true;
    for (const Target& target : packet.targets) {
        sandbox::OfferedMaterial material;
        material.md5 = material.extends["file_md5"] = "md5 of " + target.path;
        material.extends["file_path"] = target.path;
        packet.offer.materials.push_back(material);
    }
    packet.offer.modules.push_back({virusLibModule, "", newVirusLibVersion});
    packet.stored.versions[versionKey] = oldVersion;
    packet.files["update\\early"] = "p1.5";
    packet.delayed.emplace_back("update\\early", plain);
    return packet;
}

Trial healthyTrial(const Packet& packet) {
    Snapshot good;
    good.files["trayhost.exe"] = "the host";
    good.stored = packet.stored;
    good.stored.versions[fresh] = newVersion;
    good.stored.versions[virusLibKey] = newVirusLibVersion;
    good.fileList.emplace();
    for (const Target& target : packet.targets) {
        const bool stays = isToStay(packet, target);
        good.files[target.path] = stays ? target.before : target.after;
        (*good.fileList)[target.path] =
            stays ? formerEntry(target)
                  : std::string(newVersion) + " " + hashOf(packet, target) + " 2";
    }
    const Step read{Operation::openToRead, plain};
    return {.packet = packet,
            .disturbance = Disturbance::fails,
            .at = 1,
            .step = read,
            .broken = good,
            .end = good,
            .again = good,
            .wanted = good,
            .sessions = {{.end = End::itself, .steps = {read}, .programs = {"plain.exe"}}},
            .wantedPrograms = {"plain.exe"}};
}

} // namespace crash
