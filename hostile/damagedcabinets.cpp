#include "hostile/badnames.h"
#include "hostile/cabinets.h"
#include "sandbox/materials/cabwriter.h"

// Cabinets whose bytes are wrong, and those that are knotted.

namespace hostile {

namespace {

using materials::buildCabinet;
using materials::CabMethod;

constexpr const char* cutGroup = "cut";
constexpr const char* sumGroup = "wrong sums and sizes";
constexpr const char* knotGroup = "folders and sets";

constexpr std::size_t headerBytes = 36;
constexpr std::size_t firstBlockAt =
    headerBytes + 8 + 16 + sizeof("first.txt") + 16 + sizeof("c.dll");

struct Method {
    const char* name;
    CabMethod method;
};
constexpr Method methods[] = {{"stored", CabMethod::stored},
                              {"MSZIP", CabMethod::mszip},
                              {"Quantum", CabMethod::quantum},
                              {"LZX", CabMethod::lzx}};

Bytes summed(CabMethod method) {
    return buildCabinet(method, {{"first.txt", Bytes(40, 'f')}, {wantedName, wantedFile()}});
}

void addCut(std::vector<BadCabinet>& all, const Method& method) {
    const Bytes whole = summed(method.method);
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{1}, std::size_t{4}, headerBytes - 1, headerBytes,
          headerBytes + 8, headerBytes + 20, firstBlockAt - 1, firstBlockAt, firstBlockAt + 8,
          firstBlockAt + 9, whole.size() / 2, whole.size() - 1}) {
        const Fate fate = size < firstBlockAt ? Fate::untouched : Fate::refused;
        all.push_back({cutGroup, std::string(method.name) + " at " + std::to_string(size),
                       Bytes(whole.begin(), whole.begin() + static_cast<long>(size)), fate});
    }
    Bytes longer = whole;
    longer.insert(longer.end(), whole.begin(), whole.end());
    all.push_back({cutGroup, std::string(method.name) + " twice in a row", longer, Fate::placed});
}

void addWrongSums(std::vector<BadCabinet>& all, const Method& method) {
    struct Field {
        const char* what;
        std::size_t at;
    };
    const Field fields[] = {{"sum", 0},
                            {"packed size", 4},
                            {"unpacked size", 6},
                            {"first byte", 8},
                            {"last byte", summed(method.method).size() - firstBlockAt - 1}};
    for (const Field& field : fields) {
        Bytes bytes = summed(method.method);
        bytes[firstBlockAt + field.at] ^= 0x5A;
        all.push_back({sumGroup, std::string(method.name) + ", " + field.what, bytes});
    }
}

void addWrongSizes(std::vector<BadCabinet>& all) {
    RawCabinet cabinet = soundCabinet();
    cabinet.members[1].size += 1;
    all.push_back({sumGroup, "a member longer than its folder", written(cabinet)});
    cabinet = soundCabinet();
    cabinet.members[1].offset += 1;
    all.push_back({sumGroup, "a member that begins too late", written(cabinet)});
    cabinet = soundCabinet();
    cabinet.members[1].size -= 1;
    all.push_back({sumGroup, "a member that ends too early", written(cabinet)});
    cabinet = soundCabinet();
    cabinet.folders[0].blockCount = std::uint16_t{0};
    all.push_back({sumGroup, "no blocks", written(cabinet), Fate::either});
    cabinet = soundCabinet();
    cabinet.folders[0].blockCount = std::uint16_t{0xFFFF};
    all.push_back({sumGroup, "more blocks than there are", written(cabinet), Fate::placed});
    cabinet = soundCabinet();
    cabinet.folders[0].blocks[0].unpacked = 0xFFFF;
    all.push_back({sumGroup, "a block of more than 32 KB", written(cabinet), Fate::either});
    cabinet = soundCabinet();
    cabinet.folders[0].method = 0xF;
    all.push_back({sumGroup, "a method that there is not", written(cabinet)});
    cabinet = soundCabinet();
    cabinet.folders[0].method = 0xFF03;
    all.push_back({sumGroup, "a window of no size", written(cabinet)});
    for (const std::uint32_t size : {0U, 50U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        cabinet = soundCabinet();
        cabinet.size = size;
        all.push_back({sumGroup, "the cabinet's size as " + std::to_string(size), written(cabinet),
                       Fate::either});
    }
}

RawCabinet withFolderStart(std::uint32_t start) {
    RawCabinet cabinet = soundCabinet();
    cabinet.folders[0].start = start;
    return cabinet;
}

void addFolders(std::vector<BadCabinet>& all) {
    all.push_back({knotGroup, "a folder whose data is the header", written(withFolderStart(0))});
    all.push_back(
        {knotGroup, "a folder whose data is itself", written(withFolderStart(headerBytes))});
    all.push_back({knotGroup, "a folder whose data is the index", written(withFolderStart(44))});
    all.push_back({knotGroup, "a folder behind the end", written(withFolderStart(0x7FFFFFFF))});
    all.push_back(
        {knotGroup, "a folder at -1", written(withFolderStart(0xFFFFFFFF)), Fate::either});
    RawCabinet cabinet = soundCabinet();
    cabinet.folders.push_back(cabinet.folders[0]);
    cabinet.folders[1].start = static_cast<std::uint32_t>(written(soundCabinet()).size());
    cabinet.members[1].folder = 1;
    all.push_back({knotGroup, "a folder in the middle of another one", written(cabinet)});
    for (const int folder : {1, 2, 0x7FFF, 0xFFFC}) {
        cabinet = soundCabinet();
        cabinet.members[1].folder = static_cast<std::uint16_t>(folder);
        all.push_back({knotGroup, "a member of folder " + std::to_string(folder), written(cabinet),
                       Fate::either});
    }
    cabinet = soundCabinet();
    cabinet.folderCount = std::uint16_t{0};
    cabinet.firstMember = std::uint32_t{headerBytes + 8};
    all.push_back({knotGroup, "no folders", written(cabinet), Fate::untouched});
    cabinet.folderCount = std::uint16_t{0xFFFF};
    all.push_back({knotGroup, "65,535 folders", written(cabinet), Fate::untouched});
    for (const std::uint32_t first : {0U, 36U, 43U, 62U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        cabinet = soundCabinet();
        cabinet.firstMember = first;
        all.push_back({knotGroup, "the index at " + std::to_string(first), written(cabinet),
                       Fate::untouched});
    }
    for (const int count : {0, 1, 3, 0x1000}) {
        cabinet = soundCabinet();
        cabinet.memberCount = static_cast<std::uint16_t>(count);
        // What comes behind the index is read as members of any size.
        all.push_back({knotGroup, "members counted as " + std::to_string(count), written(cabinet),
                       count <= 3 ? Fate::refused : Fate::untouched, Reason::any});
    }
}

void addSets(std::vector<BadCabinet>& all) {
    for (const char* const other : {"itself", "..\\..\\evil.cab", "\\\\srv\\share\\evil.cab"}) {
        for (const int continued : {0, 0xFFFD, 0xFFFE, 0xFFFF}) {
            RawCabinet cabinet = soundCabinet();
            const Fate fate = continued == 0        ? Fate::placed
                              : continued == 0xFFFE ? Fate::either // its data is all here
                                                    : Fate::refused;
            cabinet.previous = continued != 0xFFFE ? other : "";
            cabinet.next = continued != 0xFFFD ? other : "";
            cabinet.members[1].folder = static_cast<std::uint16_t>(continued);
            all.push_back({knotGroup,
                           std::string("one of a set with ") + other + ", member in " +
                               std::to_string(continued),
                           written(cabinet), fate});
        }
    }
    RawCabinet cabinet = soundCabinet();
    cabinet.next = overlongName();
    all.push_back(
        {knotGroup, "the next one has 4,000 characters", written(cabinet), Fate::untouched});
}

} // namespace

std::vector<BadCabinet> damagedCabinets() {
    std::vector<BadCabinet> all;
    for (const Method& method : methods) {
        addCut(all, method);
        addWrongSums(all, method);
    }
    addWrongSizes(all);
    return all;
}

std::vector<BadCabinet> knottedCabinets() {
    std::vector<BadCabinet> all;
    addFolders(all);
    addSets(all);
    return all;
}

} // namespace hostile
