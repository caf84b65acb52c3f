#include "doctor/plantedcases.h"

#include <sys/stat.h>

// Files of the client, and filelist.xml.

namespace {

using sandbox::doctor::Code;
using Client = HealthyClient;

constexpr const char* listFile = "home/OrvSecurity/config/uninst/filelist.xml";

const Case fileRows[] = {
    {"Link", [](Client& c) { std::filesystem::create_symlink("/", c.file("engine\\link")); },
     Code::strangeFile, "engine\\link"},
    {"Pipe", [](Client& c) { mkfifo(c.file("pipe").c_str(), 0600); }, Code::strangeFile, "pipe"},
    {"LinkInPlace",
     [](Client& c) {
         c.remove("engine\\core.dll");
         std::filesystem::create_symlink("/etc/hostname", c.file("engine\\core.dll"));
     },
     Code::strangeFile, "core.dll"},
    {"NoModule", [](Client& c) { c.remove("xnuser.dll"); }, Code::moduleMissing, "xnuser.dll"},
    {"NoList", [](Client& c) { c.overwritten[listFile] = std::nullopt; }, Code::listMissing,
     "filelist.xml"},
    {"BrokenList", [](Client& c) { c.overwritten[listFile] = "<Root><FileList><File"; },
     Code::listUnreadable, "filelist.xml"},
    {"ListIsPipe", [](Client& c) { c.putPipe(listFile); }, Code::listUnreadable, "filelist.xml"},
    {"ListIsFolder", [](Client& c) { c.putFolder(listFile); }, Code::listUnreadable,
     "filelist.xml"},
    {"NoMd5", [](Client& c) { c.replaceInList("MD5", "MD6"); }, Code::listDamaged, "core.dll"},
    {"NoSize", [](Client& c) { c.replaceInList("Size=\"", "Size=\"x"); }, Code::listDamaged,
     "core.dll"},
    {"NoName", [](Client& c) { c.listEntry("", "1.0", otherMd5, false, 1); }, Code::listDamaged,
     "entry 5"},
    {"ListedOutside", [](Client& c) { c.listEntry("..\\system.ini", "1.0", otherMd5, false, 1); },
     Code::listOutside, "system.ini"},
    {"ListedTwice", [](Client& c) { c.listEntry("ENGINE\\CORE.DLL", "1.0", otherMd5, false, 1); },
     Code::listDouble, "ENGINE"},
    {"FileGone", [](Client& c) { c.remove("engine\\core.dll"); }, Code::listFileMissing,
     "core.dll"},
    {"FileChanged", [](Client& c) { c.put("data\\rules.dat", "rules of an intruder"); },
     Code::listContent, "rules.dat"},
    {"SizeWrong", [](Client& c) { c.replaceInList("Size=\"", "Size=\"9"); }, Code::listSize,
     "core.dll"},
    {"ListedVersionWrong", [](Client& c) { c.replaceInList("1.3.0.1600", "1.3.0.1601"); },
     Code::listVersion, "core.dll"},
    {"VersionLost", [](Client& c) { c.versions.erase("data\\rules.dat"); }, Code::listVersion,
     "rules.dat"},
    {"KindWrong", [](Client& c) { c.replaceInList("\"true\"", "\"false\""); }, Code::listKind,
     "core.dll"},
};

} // namespace

std::vector<Case> fileCases() {
    return {std::begin(fileRows), std::end(fileRows)};
}
