#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "sandbox/cli/clientsystem.h"

/// What stands in a client's folder at one moment. Reads only; a file that is missing or
/// damaged reads as empty.
namespace sandbox {

struct FileState {
    std::string path; ///< relative to the client folder, as the client spells it
    std::uint64_t size = 0;
    std::string md5;
    std::string peVersion; ///< of the version resource; empty without one

    bool operator==(const FileState&) const = default;
};

/// One entry of filelist.xml.
struct ListedFile {
    std::string name;
    std::string version;
    std::string md5;
    std::string isPe;
    std::string size;

    bool operator==(const ListedFile&) const = default;
};

struct ClientState {
    std::map<std::string, FileState> files;      ///< by comparable path; without folder "update"
    std::map<std::string, FileState> update;     ///< below "update"; names relative to it
    std::map<std::string, std::string> versions; ///< the version store, by comparable path
    nlohmann::json settings = nlohmann::json::object();
    std::map<std::string, ListedFile> listed; ///< filelist.xml, by comparable name
    PendingList pending;
    std::vector<std::string> damaged; ///< stores that hold no JSON object, in words

    /// Of the file itself, or else what the version store has for it; nothing without a
    /// file.
    std::optional<std::string> versionAt(const std::string& path) const;
    /// A file of the client, in folder "update" or not; null when it is not there.
    const FileState* fileAt(const std::string& path) const;
    /// Waiting files by target, from the padding list.
    std::map<std::string, std::string> padding() const;
};

ClientState readClient(const ClientSystem& system);

/// The entries of a filelist.xml, by comparable name.
std::map<std::string, ListedFile> readFileList(const std::filesystem::path& file);

/// Where filelist.xml lies.
std::filesystem::path fileListPath(const Folders& folders);

/// The copy of it as it was laid out.
std::filesystem::path firstFileListPath(const Folders& folders);

/// Whether a file's name is the sandbox's own journal of the delayed moves.
bool isJournal(const std::string& name);

} // namespace sandbox
