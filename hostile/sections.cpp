#include "hostile/sections.h"

#include <algorithm>
#include <limits>
#include <set>

#include "hostile/badnames.h"
#include "hostile/images.h"
#include "sandbox/materials/pefile.h"

namespace hostile {

namespace {

constexpr std::size_t inOnePacket = 50;
constexpr const char* soundPath = "bin\\c.dat";

Bytes olderImage() {
    return materials::buildPeFile({.version = {1, 0, 0, 0}, .name = "module.dll"});
}

/// Newer than whatever a broken image says of itself.
Bytes newestImage(std::uint64_t seed) {
    constexpr std::uint16_t most = std::numeric_limits<std::uint16_t>::max();
    return materials::buildPeFile(
        {.version = {most, most, most, most}, .size = 1500, .seed = seed});
}

Pair imagePair(std::uint64_t seed) {
    const std::string path = "bin\\i" + std::to_string(seed) + ".dll";
    const Bytes broken = brokenImage(seed);
    const Bytes sound = newestImage(seed);
    return {path, olderImage(), plainly(path, broken), plainly(path, sound), broken, sound};
}

Pair cabinetPair(std::uint64_t seed) {
    return pairOf(brokenCabinet(seed), "r" + std::to_string(seed));
}

/// Packets of what follows from the seeds; of what is the same twice only the first.
Tally tryMany(const char* group, std::size_t count, Pair (*pairFor)(std::uint64_t)) {
    Tally tally;
    for (std::size_t first = 0; first < count; first += inOnePacket) {
        std::vector<Pair> pairs;
        std::set<std::string> hashes;
        for (std::size_t seed = first; seed < std::min(first + inOnePacket, count); ++seed) {
            Pair pair = pairFor(seed);
            if (hashes.insert(pair.hostile.md5).second) {
                pairs.push_back(std::move(pair));
            }
        }
        tally.add(group, "seeds from " + std::to_string(first), tried(pairs, {}));
    }
    return tally;
}

struct NameCase {
    const char* field;
    std::string what;
    Offered hostile;
    Expected expected;
};

std::vector<NameCase> nameCases() {
    const Bytes content(300, 'n');
    const Bytes cabinet = written(soundCabinet());
    const Offered plain = plainly(soundPath, content);
    const Offered packed{soundPath, materials::md5Hex(cabinet), "", cabinet, true};
    std::vector<NameCase> cases;
    const auto add = [&](const char* field, const std::string& what, const Offered& good,
                         std::string Offered::*member, const std::string& name, bool endsEarly) {
        Offered hostile = good;
        hostile.*member = name;
        cases.push_back({field, what, hostile, {Fate::untouched, Reason::none, endsEarly}});
    };
    const auto addAll = [&](const std::string& what, const std::string& name) {
        add("file_path", what, plain, &Offered::filePath, name, false);
        add("file_path, packed", what, packed, &Offered::filePath, name, false);
        add("md5", what, plain, &Offered::md5, name, true);
        // Without one the file is fetched all the same, and refused by the move.
        add("file_md5", what, packed, &Offered::fileMd5, name, !name.empty());
    };
    for (const BadName& bad : badNames()) {
        if (bad.what != "no UTF-8") { // such a text is in no JSON of ours
            addAll(bad.what, bad.name);
        }
    }
    addAll("a zero byte, then a way out", std::string("c.dat\0..\\evil.dll", 17));
    add("file_path", "4,000 characters", plain, &Offered::filePath, overlongName(), false);
    add("md5", "4,000 characters", plain, &Offered::md5, overlongName(), true);
    return cases;
}

} // namespace

void Tally::add(const std::string& group, const std::string& what, const Verdict& verdict) {
    auto& line = lines[group];
    std::string became;
    for (const Outcome outcome : verdict.outcomes) {
        const auto column = static_cast<std::size_t>(outcome);
        ++line.at(column);
        became.append(" ").append(outcomeNames.at(column));
    }
    const std::string trial = group + ", " + what + ":";
    details.push_back(trial + became);
    for (const std::string& fault : verdict.faults) {
        faults.push_back(std::string(trial).append(" ").append(fault));
    }
}

Tally tryCabinets(std::size_t stride) {
    Tally tally;
    const std::vector<BadCabinet> all = badCabinets();
    for (std::size_t i = 0; i < all.size(); i += stride) {
        const BadCabinet& bad = all[i];
        tally.add(bad.group, bad.what, tried({pairOf(bad.bytes, "bin")}, {bad.fate, bad.reason}));
    }
    return tally;
}

Tally tryBrokenCabinets(std::size_t count) {
    return tryMany("broken cabinets", count, cabinetPair);
}

Tally tryBrokenImages(std::size_t count) {
    return tryMany("broken images", count, imagePair);
}

Tally tryNames(std::size_t stride) {
    Tally tally;
    const Bytes before(200, 'o');
    const Bytes sound(400, 's');
    const std::vector<NameCase> cases = nameCases();
    for (std::size_t i = 0; i < cases.size(); i += stride) {
        const NameCase& one = cases[i];
        const Pair pair{soundPath, before, one.hostile, plainly(soundPath, sound), before, sound};
        tally.add(one.field, one.what, tried({pair}, one.expected));
    }
    return tally;
}

} // namespace hostile
