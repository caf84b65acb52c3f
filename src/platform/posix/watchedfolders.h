#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <sys/stat.h>

struct inotify_event;

namespace platform::posix {

/// The names in a few folders, kept true by the events that the system queues with each change,
/// before the change returns to whoever makes it. Any thread, but no process that was forked:
/// the queue would be one for both.
class WatchedFolders {
public:
    using NameStep = std::function<void(const char* name)>;
    using List = std::function<bool(const NameStep& step)>; ///< false when it has not seen all

    WatchedFolders() = default;
    ~WatchedFolders();
    WatchedFolders(const WatchedFolders&) = delete;
    WatchedFolders& operator=(const WatchedFolders&) = delete;

    /// The name in that folder that `name` matches without regard to case, or none; nothing at
    /// all when the folder is not watched.
    std::optional<std::optional<std::string>> find(const std::string& systemFolder,
                                                   const std::string& name);

    /// Watches a folder whose names `list` hands to its step. Where the system has no watches
    /// left, or the names cannot be had, nothing happens.
    void add(const std::string& systemFolder, const List& list);

private:
    struct Folder {
        dev_t device; ///< a path may be spelled in many ways and lead elsewhere one day
        ino_t inode;
        int watch;
        std::map<std::string, std::set<std::string>> names; ///< by the name in lower case
    };

    std::list<Folder>::iterator folderOf(const struct stat& status);
    void takeEvents();
    void take(const inotify_event& event);
    void drop(std::list<Folder>::iterator folder);

    std::mutex mutex;
    int queue = -1;            ///< of events; below 0 without one
    std::list<Folder> folders; ///< the one not asked for longest comes first
};

} // namespace platform::posix
