#include "platform/posix/foldernames.h"

#include "platform/asciicase.h"
#include "platform/posix/watchedfolders.h"

#include <cerrno>
#include <dirent.h>
#include <memory>

namespace platform::posix {

namespace {

/// Below it a listing costs less than what a watch costs the system with each change.
constexpr std::size_t manyEntries = 20;

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};

/// Calls `step` with each name; how many there were, or nothing when they cannot all be had.
template <class Step>
std::optional<std::size_t> listNames(const std::string& folder, Step step) {
    std::unique_ptr<DIR, CloseFolder> entries(::opendir(folder.empty() ? "." : folder.c_str()));
    if (!entries) {
        return std::nullopt;
    }
    std::size_t count = 0;
    errno = 0;
    while (const dirent* entry = ::readdir(entries.get())) {
        step(entry->d_name);
        ++count;
        errno = 0;
    }
    return errno == 0 ? std::optional(count) : std::nullopt;
}

} // namespace

std::optional<std::optional<std::string>> findIgnoringCase(const std::string& systemFolder,
                                                           const std::string& name) {
    static WatchedFolders& watched = *new WatchedFolders; // threads outlive static objects
    if (auto known = watched.find(systemFolder, name)) {
        return known;
    }
    std::optional<std::string> found;
    const auto count = listNames(systemFolder, [&](const char* entry) {
        if (equalIgnoringCase(entry, name) && (!found || entry < *found)) {
            found = entry;
        }
    });
    if (!count) {
        return std::nullopt;
    }
    if (*count > manyEntries) {
        watched.add(systemFolder, [&systemFolder](const auto& step) {
            return listNames(systemFolder, step).has_value();
        });
    }
    return found;
}

} // namespace platform::posix
