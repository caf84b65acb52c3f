#include "hostile/cabinets.h"

#include "hostile/badnames.h"
#include "hostile/images.h"
#include "hostile/mutation.h"
#include "sandbox/materials/cabwriter.h"

namespace hostile {

namespace {

using materials::buildCabinet;
using materials::CabMethod;

const Bytes& firstFile() {
    static const Bytes bytes(40, 'f');
    return bytes;
}

/// The first member is sound, and may not come out either where a name is bad.
Bytes withMember(const std::string& name) {
    RawCabinet cabinet = soundCabinet();
    cabinet.members.push_back({name, 4, 0, 0});
    return written(cabinet);
}

Bytes withNames(const std::vector<std::string>& names) {
    RawCabinet cabinet = soundCabinet();
    for (const std::string& name : names) {
        cabinet.members.push_back({name, 4, 0, 0});
    }
    return written(cabinet);
}

} // namespace

Bytes wantedFile() {
    return soundImage(1);
}

RawCabinet soundCabinet() {
    Bytes content = firstFile();
    const Bytes wanted = wantedFile();
    const auto size = static_cast<std::uint32_t>(content.size());
    content.insert(content.end(), wanted.begin(), wanted.end());
    return {{storedFolder(content)},
            {{"first.txt", size, 0, 0},
             {wantedName, static_cast<std::uint32_t>(wanted.size()), size, 0}}};
}

std::vector<BadCabinet> badlyNamedCabinets() {
    std::vector<BadCabinet> all;
    const char* const group = "names of members";
    for (const BadName& bad : badNames()) {
        // Some readers take a member without a name for damage.
        const Reason reason = bad.name.empty() ? Reason::any : Reason::badMember;
        all.push_back({group, bad.what, withMember(bad.name), Fate::untouched, reason});
    }
    all.push_back({group, "4,000 characters", withMember(overlongName()), Fate::untouched});
    all.push_back({group, "255 characters", withMember(std::string(255, 'a'))});
    all.push_back({group, "a zero byte, then a way out",
                   withMember(std::string("x\0..\\evil.dll", 13)), Fate::placed});
    RawCabinet shifted = soundCabinet();
    shifted.members[0].name = std::string("x\0..\\evil.dll", 13);
    all.push_back({group, "a zero byte that shifts the index", written(shifted), Fate::untouched,
                   Reason::any});
    all.push_back({group, "a folder that is not there", withMember("none\\evil.dll")});
    all.push_back({group, "the folder of old files", withMember("temp")});
    all.push_back({group, "the wanted file a second time, other bytes", withMember(wantedName)});
    all.push_back({group, "one good name, one bad one, one good one",
                   withNames({"good.txt", "..\\evil.dll", "last.txt"}), Fate::untouched,
                   Reason::badMember});
    return all;
}

std::vector<BadCabinet> badCabinets() {
    std::vector<BadCabinet> all;
    for (const auto& some : {badlyNamedCabinets(), damagedCabinets(), knottedCabinets(), bombs()}) {
        all.insert(all.end(), some.begin(), some.end());
    }
    return all;
}

Bytes brokenCabinet(std::uint64_t seed) {
    constexpr std::size_t index = 36 + 8 + 2 * 16 + 16; // ends within the first block
    constexpr CabMethod methods[] = {CabMethod::stored, CabMethod::mszip, CabMethod::quantum,
                                     CabMethod::lzx};
    Mutation mutation(seed);
    Bytes bytes = buildCabinet(methods[mutation.below(std::size(methods))],
                               {{"first.txt", firstFile()}, {wantedName, wantedFile()}});
    const std::size_t reach = mutation.below(4) == 0 ? bytes.size() : index;
    for (std::size_t changes = 1 + mutation.below(3); changes > 0; --changes) {
        mutation.change(bytes, reach);
    }
    return bytes;
}

} // namespace hostile
