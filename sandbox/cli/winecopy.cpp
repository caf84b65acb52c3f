#include "sandbox/cli/winecopy.h"

#include <fstream>
#include <stdexcept>
#include <string>

namespace sandbox {
namespace {

namespace fs = std::filesystem;

/// Wine replaces these files by new ones and never writes into them. On another file
/// system a link by name has to do.
void shareFile(const fs::path& file, const fs::path& copy) {
    std::error_code error;
    fs::create_hard_link(file, copy, error);
    if (error) {
        fs::create_symlink(fs::absolute(file), copy);
    }
}

/// Whether files may come and go in it while the original runs.
bool isTemporary(const fs::path& folder) {
    return folder.filename() == "Temp" || folder.filename() == "temp";
}

void shareTree(const fs::path& folder, const fs::path& copy) {
    fs::create_directory(copy);
    for (const auto& entry : fs::directory_iterator(folder)) {
        const fs::path target = copy / entry.path().filename();
        if (entry.is_symlink() || isTemporary(entry.path())) {
            fs::create_directory(target); // a linked one is a user's, in the real home
        } else if (entry.is_directory()) {
            shareTree(entry.path(), target);
        } else {
            shareFile(entry.path(), target);
        }
    }
}

/// The registry file without the delayed moves that the original has: they are none of the copy's.
/// A value goes on in the next line where a line ends in a backslash.
void copyRegistry(const fs::path& file, const fs::path& copy) {
    std::ifstream from(file, std::ios::binary);
    std::ofstream to(copy, std::ios::binary);
    bool isDelayed = false;
    bool goesOn = false;
    for (std::string line; std::getline(from, line);) {
        isDelayed = goesOn ? isDelayed : line.rfind(R"("PendingFileRenameOperations)", 0) == 0;
        goesOn = !line.empty() && line.back() == '\\';
        if (!isDelayed) {
            to << line << '\n';
        }
    }
    to.close();
    if (!from.eof() || !to) {
        throw std::runtime_error(file.string() + " cannot be copied to " + copy.string());
    }
}

} // namespace

void copyWine(const fs::path& original, const fs::path& copy, const fs::path& driveD) {
    if (!fs::exists(original / "system.reg")) {
        throw std::runtime_error(original.string() +
                                 " holds no Wine system; \"./dev build windows\" makes one");
    }
    fs::create_directory(copy);
    shareTree(original / "drive_c", copy / "drive_c");
    // No Z:, the whole disk: nothing outside the run's folder is this Windows's.
    const fs::path drives = copy / "dosdevices";
    fs::create_directory(drives);
    fs::create_directory_symlink("../drive_c", drives / "c:");
    fs::create_directory_symlink(driveD.lexically_relative(drives), drives / "d:");
    // Wine writes right into a registry file with more than one link.
    for (const char* file : {"user.reg", "userdef.reg", ".update-timestamp"}) {
        fs::copy_file(original / file, copy / file);
    }
    copyRegistry(original / "system.reg", copy / "system.reg");
}

} // namespace sandbox
