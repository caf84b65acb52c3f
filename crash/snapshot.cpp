#include <fstream>
#include <pugixml.hpp>

#include "crash/machine.h"
#include "platform/posix/delayedmoves.h"
#include "sandbox/common/clientpath.h"
#include "sandbox/platform/delayed.h"
#include "sandbox/platform/filewrites.h"

// What stands on a machine, and what stands there at first.

namespace crash {

namespace {

namespace fs = std::filesystem;

constexpr const char* listPlace = "home/OrvSecurity/config/uninst/filelist.xml";

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != std::string::npos;
         at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

} // namespace

void Machine::writeFileList() const {
    std::string entries;
    for (const Target& target : content.targets) {
        if (!target.before.empty()) {
            entries += "<File Name=\"" + target.path + "\" Version=\"" + oldVersion + "\" MD5=\"" +
                       oldMd5 + "\" IsPE=\"true\" Size=\"" + oldSize + "\"/>";
        }
    }
    const fs::path place = host.folder / listPlace;
    fs::create_directories(place.parent_path());
    std::ofstream(place) << "<Root><FileList>" << entries << "</FileList></Root>";
}

Snapshot Machine::look() const {
    Snapshot now;
    const fs::path client = host.folder / "client";
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(client)) {
        if (entry.is_regular_file() &&
            entry.path().filename() != platform::posix::delayedMovesJournal) {
            now.files[sandbox::toClientPath(entry.path().lexically_relative(client))] =
                sandbox::readFile(entry.path()).value();
        }
    }
    now.stored = stored();
    const std::string folder = host.clientPath("client") + "\\";
    for (const sandbox::PendingMove& move : sandbox::pendingMoves(client)) {
        const std::string text = move.from + (move.to.empty() ? "" : " > " + move.to);
        now.delayed.push_back(replaced(replaced(text, "\\\\", "\\"), folder, ""));
    }
    pugi::xml_document list;
    if (list.load_file((host.folder / listPlace).c_str())) {
        now.fileList.emplace();
        for (const pugi::xml_node entry : list.child("Root").child("FileList")) {
            std::string& stands = (*now.fileList)[entry.attribute("Name").as_string()];
            stands.append(entry.attribute("Version").as_string()).append(" ");
            stands.append(entry.attribute("MD5").as_string()).append(" ");
            stands.append(entry.attribute("Size").as_string());
        }
    }
    return now;
}

std::string Machine::told(std::string text) const {
    text = replaced(std::move(text), "\\\\", "\\");
    text = replaced(std::move(text), host.clientPath("client") + "\\", "");
    text = replaced(std::move(text), host.folder.string(), "");
    for (const auto& [hash, name] : content.names) {
        text = replaced(std::move(text), hash, std::string("<").append(name).append(">"));
    }
    return text;
}

} // namespace crash
