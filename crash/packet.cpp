#include "crash/packet.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "host/settings.h"
#include "sandbox/materials/cabwriter.h"
#include "support/material.h"

namespace crash {

namespace {

constexpr const char* refusedHash = "0123456789abcdef0123456789abcdef";
constexpr std::size_t manyBlocks = 10000;

std::string textOf(const materials::Bytes& bytes) {
    return {bytes.begin(), bytes.end()};
}

materials::Bytes bytesOf(const std::string& text) {
    return material::bytes(text);
}

/// With a member that is nobody's target.
materials::Bytes cabinetOf(const std::string& name, const materials::Bytes& content) {
    std::vector<materials::CabMember> members;
    members.push_back({name, content});
    members.push_back({"beside-" + name, bytesOf("beside")});
    return materials::buildCabinet(materials::CabMethod::mszip, members);
}

/// Puts a packet together, a target at a time.
class Builder {
public:
    explicit Builder(const std::string& name) {
        packet.name = name;
        packet.offer.productId = "product";
        packet.offer.channelId = "channel";
        packet.offer.version = newVersion;
        packet.stored.versions[versionKey] = oldVersion;
        packet.stored.numbers[settingkeys::kelvarLastCheckTime] = 1;
        packet.files["trayhost.exe"] = "the host";
    }

    Target& image(const std::string& path, const std::string& group = "", bool isNew = false) {
        Target target{.path = path, .after = imageOf(2), .group = group};
        if (!isNew) {
            target.before = imageOf(1);
        }
        return add(std::move(target));
    }
    Target& data(const std::string& path) {
        Target target{.path = path, .before = "the old " + path};
        target.after = textOf(materials::randomBytes(manyBlocks, ++seed));
        target.isImage = false;
        packet.stored.versions[path] = oldVersion;
        return add(std::move(target));
    }
    Builder& held(const Target& target) {
        packet.held.push_back(target.path);
        return *this;
    }

    /// A file that an earlier run has left to the restart, with its entry in the list.
    void waits(const std::string& path, const std::string& bytes) {
        const std::string name = materials::md5Hex(bytesOf(bytes));
        packet.files["update\\" + name] = bytes;
        packet.delayed.emplace_back("update\\" + name, path);
        waiting[path] = name;
        packet.names[name] = "earlier " + path;
    }
    /// An old file that an earlier run has pushed aside, with its entry in the list.
    void pushedAside(const std::string& name) {
        packet.files["update\\temp\\" + name] = "pushed aside";
        aside.push_back(name);
    }

    /// Offers the targets; those of `inCabinets` come packed.
    Packet finish(const std::vector<std::string>& inCabinets) {
        for (const Target& target : packet.targets) {
            const bool packed = std::count(inCabinets.begin(), inCabinets.end(), target.path) > 0;
            offer(target, packed);
            if (!target.before.empty()) {
                packet.files[target.path] = target.before;
            }
        }
        if (!waiting.empty()) {
            packet.stored.texts[settingkeys::kelvarPaddingFileList] =
                nlohmann::json(waiting).dump();
        }
        if (!aside.empty()) {
            packet.stored.texts[settingkeys::kelvarTempFileList] = nlohmann::json(aside).dump();
        }
        return packet;
    }

    Packet packet;

private:
    std::string imageOf(std::uint16_t major) {
        return textOf(material::pe({major, 0, 0, 2002}, ++seed));
    }

    Target& add(Target target) {
        packet.targets.push_back(std::move(target));
        return packet.targets.back();
    }

    void offer(const Target& target, bool packed) {
        const materials::Bytes placed = bytesOf(target.after);
        const std::string leaf = target.path.substr(target.path.rfind('\\') + 1);
        const materials::Bytes file = packed ? cabinetOf(leaf, placed) : placed;
        sandbox::OfferedMaterial material;
        material.id = material.fileId = leaf;
        material.moduleId = leaf == "virus.dat" ? virusLibModule : "/module";
        material.version = newVersion;
        material.md5 = materials::md5Hex(file);
        material.extends["file_path"] = target.path;
        const std::string hash = materials::md5Hex(placed);
        material.extends["file_md5"] = target.isRefused ? refusedHash : hash;
        if (!packed) {
            material.extends["non_cab"] = "1";
        }
        if (!target.group.empty()) {
            material.extends["dependent"] = target.group;
        }
        if (!target.program.empty()) {
            material.extends["exec"] = "(%process%=\"" + target.program + "\" %param%=\"-x\")";
        }
        packet.storage[leaf] = textOf(file);
        packet.names[material.md5] = packed ? "cabinet of " + leaf : "new " + leaf;
        packet.names.emplace(hash, "new " + leaf);
        packet.offer.materials.push_back(std::move(material));
    }

    std::uint64_t seed = 0;
    std::map<std::string, std::string> waiting;
    std::vector<std::string> aside;
};

} // namespace

Packet wholePacket() {
    Builder builder("whole");
    builder.image("bin\\plain.dll").program = "plain.exe";
    builder.image("new\\deep\\new.dll", "", true);
    builder.data("data\\virus.dat");
    builder.image("bin\\packed.dll");
    builder.held(builder.image("bin\\used.dll"));
    builder.image("pair\\first.dll", "pair").program = "pair.exe";
    builder.image("pair\\second.dll", "pair");
    builder.image("wait\\idle.dll", "wait");
    builder.held(builder.image("wait\\busy.dll", "wait"));
    const Target& again = builder.image("bin\\again.dll");
    builder.waits(again.path, textOf(material::pe({1, 5, 0, 0})));
    builder.packet.files["foreign.dll"] = textOf(material::pe({1, 0, 0, 0}, 77));
    builder.waits("foreign.dll", textOf(material::pe({3, 0, 0, 0}, 77)));
    builder.pushedAside("0000000000000000000000000000000a");
    builder.packet.offer.modules.push_back({virusLibModule, "", newVirusLibVersion});
    return builder.finish({"bin\\packed.dll", "wait\\idle.dll"});
}

Packet refusedPacket() {
    Builder builder("refused");
    builder.image("bin\\plain.dll");
    builder.image("group\\placed.dll", "group").program = "group.exe";
    builder.image("group\\new.dll", "group", true);
    builder.held(builder.image("group\\used.dll", "group"));
    builder.image("group\\zbad.dll", "group").isRefused = true;
    builder.image("group\\zuntried.dll", "group");
    return builder.finish({});
}

Packet smallPacket() {
    Builder builder("small");
    builder.image("bin\\plain.dll").program = "plain.exe";
    builder.image("bin\\packed.dll");
    builder.held(builder.image("bin\\used.dll"));
    return builder.finish({"bin\\packed.dll"});
}

} // namespace crash
