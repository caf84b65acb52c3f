#include "hostile/badnames.h"

#include <iterator>

namespace hostile {

namespace {

constexpr std::size_t overlong = 4000;

struct Row {
    const char* what;
    const char* name;
};

constexpr Row climbing[] = {
    {"climbs out", "..\\evil.dll"},
    {"climbs out with the other separator", "../evil.dll"},
    {"climbs out later", "a\\..\\..\\evil.dll"},
    {"climbs out behind a dot", ".\\..\\evil.dll"},
    {"climbs out in both spellings", "a/..\\../evil.dll"},
    {"climbs to the top", "..\\..\\..\\..\\..\\..\\..\\..\\..\\..\\..\\..\\tmp\\evil.dll"},
    {"climbs out and in again", "..\\client\\evil.dll"},
    {"climbs out to the host", "..\\trayhost.exe"},
    {"climbs behind a letter that takes the separator along", "\u4e2d\\b\\..\\..\\evil.dll"},
    {"the folder above", ".."},
    {"the folder itself", "."},
    {"the folder by a detour", "a\\.."},
    {"dots and blanks", ". . ."},
    {"more dots on the way", "... \\evil.dll"},
    {"a blank", " "},
    {"nothing", ""},
};

constexpr Row rooted[] = {
    {"root", "\\evil.dll"},
    {"root with the other separator", "/evil.dll"},
    {"a folder of the system", "/tmp/evil.dll"},
    {"a folder of the system by root", "\\tmp\\evil.dll"},
    {"drive", "C:evil.dll"},
    {"root of a drive", "C:\\evil.dll"},
    {"root of a drive with the other separator", "c:/evil.dll"},
    {"share", "\\\\srv\\share\\evil.dll"},
    {"share with the other separator", "//srv/share/evil.dll"},
    {"plain form of a path", "\\\\?\\C:\\evil.dll"},
    {"devices by their folder", "\\\\.\\C:"},
    {"stream", "evil.dll:stream"},
    {"stream of the data", "evil.dll::$DATA"},
};

constexpr Row devices[] = {
    {"nul", "nul"},
    {"nul with an extension", "NUL.dll"},
    {"nul with a blank", "nul .dll"},
    {"nul in a folder", "bin\\nul"},
    {"nul as a folder", "nul\\evil.dll"},
    {"con", "con"},
    {"conin$", "ConIn$"},
    {"conout$", "CONOUT$"},
    {"prn", "prn.txt"},
    {"aux", "aux"},
    {"com0", "com0"},
    {"com1", "COM1"},
    {"com9 with extensions", "com9.a.b"},
    {"com and a raised 1", "com\u00b9"},
    {"com and a raised 2", "COM\u00b2.dll"},
    {"lpt1", "lpt1"},
    {"lpt9", "Lpt9.dll"},
    {"lpt and a raised 3", "lpt\u00b3"},
};

} // namespace

std::vector<BadName> badNames() {
    std::vector<BadName> names;
    for (const Row& row : climbing) {
        names.push_back({row.what, row.name});
    }
    for (const Row& row : rooted) {
        names.push_back({row.what, row.name});
    }
    for (const Row& row : devices) {
        names.push_back({row.what, row.name});
    }
    names.push_back({"no UTF-8", "evil\xff.dll"});
    return names;
}

std::string overlongName() {
    std::string name(overlong, 'a');
    return name;
}

} // namespace hostile
