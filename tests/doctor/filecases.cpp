#include "doctor/plantedcases.h"

#include <sys/stat.h>

// Files of the client, and filelist.xml.

namespace {

using sandbox::doctor::Code;
using Client = HealthyClient;

constexpr const char* listFile = "home/OrvSecurity/config/uninst/filelist.xml";

const Case fileRows[] = {
    {"Link", Code::strangeFile, "engine\\link",
     [](Client& c) {
         std::filesystem::create_symlink("/", c.file("engine\\link"));
     }},
    {"Pipe", Code::strangeFile, "pipe",
     [](Client& c) {
         mkfifo(c.file("pipe").c_str(), 0600);
     }},
    {"LinkInPlace", Code::strangeFile, "core.dll",
     [](Client& c) {
         c.remove("engine\\core.dll");
         std::filesystem::create_symlink("/etc/hostname", c.file("engine\\core.dll"));
     }},
    {"NoModule", Code::moduleMissing, "xnuser.dll",
     [](Client& c) {
         c.remove("xnuser.dll");
     }},
    {"NoList", Code::listMissing, "filelist.xml",
     [](Client& c) {
         c.overwritten[listFile] = std::nullopt;
     }},
    {"BrokenList", Code::listUnreadable, "filelist.xml",
     [](Client& c) {
         c.overwritten[listFile] = "<Root><FileList><File";
     }},
    {"ListIsPipe", Code::listUnreadable, "filelist.xml",
     [](Client& c) {
         c.putPipe(listFile);
     }},
    {"ListIsFolder", Code::listUnreadable, "filelist.xml",
     [](Client& c) {
         c.putFolder(listFile);
     }},
    {"NoMd5", Code::listDamaged, "core.dll",
     [](Client& c) {
         c.replaceInList("MD5", "MD6");
     }},
    {"NoSize", Code::listDamaged, "core.dll",
     [](Client& c) {
         c.replaceInList("Size=\"", "Size=\"x");
     }},
    {"NoName", Code::listDamaged, "entry 5",
     [](Client& c) {
         c.listEntry("", "1.0", otherMd5, false, 1);
     }},
    {"ListedOutside", Code::listOutside, "system.ini",
     [](Client& c) {
         c.listEntry("..\\system.ini", "1.0", otherMd5, false, 1);
     }},
    {"ListedTwice", Code::listDouble, "ENGINE",
     [](Client& c) {
         c.listEntry("ENGINE\\CORE.DLL", "1.0", otherMd5, false, 1);
     }},
    {"FileGone", Code::listFileMissing, "core.dll",
     [](Client& c) {
         c.remove("engine\\core.dll");
     }},
    {"FileChanged", Code::listContent, "rules.dat",
     [](Client& c) {
         c.put("data\\rules.dat", "rules of an intruder");
     }},
    {"SizeWrong", Code::listSize, "core.dll",
     [](Client& c) {
         c.replaceInList("Size=\"", "Size=\"9");
     }},
    {"ListedVersionWrong", Code::listVersion, "core.dll",
     [](Client& c) {
         c.replaceInList("1.3.0.1600", "1.3.0.1601");
     }},
    {"VersionLost", Code::listVersion, "rules.dat",
     [](Client& c) {
         c.versions.erase("data\\rules.dat");
     }},
    {"KindWrong", Code::listKind, "core.dll",
     [](Client& c) {
         c.replaceInList("\"true\"", "\"false\"");
     }},
};

} // namespace

std::vector<Case> fileCases() {
    return {std::begin(fileRows), std::end(fileRows)};
}
