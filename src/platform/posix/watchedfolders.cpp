#include "platform/posix/watchedfolders.h"

#include "platform/asciicase.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <sys/inotify.h>
#include <unistd.h>

namespace platform::posix {

namespace {

constexpr std::size_t mostFolders = 4;
constexpr std::uint32_t arrivals = IN_CREATE | IN_MOVED_TO;
constexpr std::uint32_t departures = IN_DELETE | IN_MOVED_FROM;
constexpr std::uint32_t ends = IN_IGNORED | IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT;

std::string folded(std::string name) {
    std::transform(name.begin(), name.end(), name.begin(), lowerAscii);
    return name;
}

} // namespace

WatchedFolders::~WatchedFolders() {
    if (queue >= 0) {
        ::close(queue);
    }
}

std::optional<std::optional<std::string>> WatchedFolders::find(const std::string& systemFolder,
                                                               const std::string& name) {
    const std::lock_guard lock(mutex);
    struct stat status {};
    if (folders.empty() || ::stat(systemFolder.c_str(), &status) != 0) {
        return std::nullopt;
    }
    takeEvents(); // behind the look at the path: a folder that is gone by now is dropped
    const auto folder = folderOf(status);
    if (folder == folders.end()) {
        return std::nullopt;
    }
    folders.splice(folders.end(), folders, folder); // the first in the list is the next to go
    const auto found = folder->names.find(folded(name));
    return found == folder->names.end() ? std::optional<std::string>() : *found->second.begin();
}

void WatchedFolders::add(const std::string& systemFolder, const List& list) {
    const std::lock_guard lock(mutex);
    if (queue < 0) {
        queue = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    }
    struct stat status {};
    if (queue < 0 || ::stat(systemFolder.c_str(), &status) != 0 ||
        folderOf(status) != folders.end()) { // another thread was faster
        return;
    }
    if (folders.size() == mostFolders) {
        drop(folders.begin());
    }
    // Watched before it is listed: what comes or goes meanwhile is told again, in its order.
    const int watch =
        ::inotify_add_watch(queue, systemFolder.c_str(),
                            arrivals | departures | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR);
    if (watch < 0) {
        return;
    }
    Folder& folder = folders.emplace_back(Folder{status.st_dev, status.st_ino, watch, {}});
    const bool isListed =
        list([&folder](const char* name) { folder.names[folded(name)].insert(name); });
    // Another folder may have taken its place in between.
    if (!isListed || ::stat(systemFolder.c_str(), &status) != 0 ||
        folderOf(status) != std::prev(folders.end())) {
        drop(std::prev(folders.end()));
    }
}

std::list<WatchedFolders::Folder>::iterator WatchedFolders::folderOf(const struct stat& status) {
    return std::find_if(folders.begin(), folders.end(), [&status](const Folder& known) {
        return known.device == status.st_dev && known.inode == status.st_ino;
    });
}

void WatchedFolders::takeEvents() {
    alignas(inotify_event) std::array<char, 16384> events;
    for (;;) {
        const ssize_t size = queue < 0 ? 0 : ::read(queue, events.data(), events.size());
        if (size <= 0) {
            return; // nothing has come
        }
        for (ssize_t at = 0; at < size;) {
            const auto* event = reinterpret_cast<const inotify_event*>(events.data() + at);
            take(*event);
            at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
    }
}

void WatchedFolders::take(const inotify_event& event) {
    if (event.mask & IN_Q_OVERFLOW) {
        while (!folders.empty()) {
            drop(folders.begin());
        }
        return;
    }
    const auto folder = std::find_if(folders.begin(), folders.end(),
                                     [&](const Folder& known) { return known.watch == event.wd; });
    if (folder == folders.end()) {
        return; // of a watch that was dropped
    }
    if (event.mask & ends) {
        drop(folder);
    } else if (event.mask & arrivals) {
        folder->names[folded(event.name)].insert(event.name);
    } else if (event.mask & departures) {
        const auto names = folder->names.find(folded(event.name));
        if (names != folder->names.end() && names->second.erase(event.name) > 0 &&
            names->second.empty()) {
            folder->names.erase(names);
        }
    }
}

void WatchedFolders::drop(std::list<Folder>::iterator folder) {
    ::inotify_rm_watch(queue, folder->watch);
    folders.erase(folder);
}

} // namespace platform::posix
