#include "platform/posix/delayedmoves.h"

#include "platform/posix/journalline.h"
#include "platform/posix/movefile.h"
#include "platform/posix/systempath.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform::posix {

namespace {

std::string journalPath(const std::string& hostFolder) {
    return resolvePath(hostFolder + '\\' + delayedMovesJournal);
}

/// The journal, opened and held alone. Owns descriptor and lock.
class Journal {
public:
    Journal(const std::string& systemPath, int flags) : path(systemPath) {
        while (open(flags) && isStale()) {
            ::close(descriptor);
        }
    }
    ~Journal() {
        if (descriptor >= 0) {
            ::close(descriptor);
        }
    }
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    bool isOpen() const { return descriptor >= 0; }
    bool readAll(std::string& text) const;

    /// Leaves exactly `size` bytes and `line` behind them, on the disk.
    bool append(std::size_t size, const std::string& line) const;

private:
    bool open(int flags) {
        descriptor = ::open(path.c_str(), flags | O_CLOEXEC, 0666);
        if (descriptor < 0) {
            return false;
        }
        int result = 0;
        do {
            result = ::flock(descriptor, LOCK_EX);
        } while (result != 0 && errno == EINTR);
        if (result != 0) {
            ::close(descriptor);
            descriptor = -1; // never written without the lock
        }
        return result == 0;
    }

    /// Whether somebody carried the journal out while this waited for the lock.
    bool isStale() const {
        struct stat status {};
        return ::fstat(descriptor, &status) == 0 && status.st_nlink == 0;
    }

    bool writeAll(const std::string& line) const;

    std::string path;
    int descriptor = -1;
};

bool Journal::readAll(std::string& text) const {
    char block[4096];
    for (;;) {
        const ssize_t count = ::read(descriptor, block, sizeof block);
        if (count > 0) {
            text.append(block, static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            return count == 0;
        }
    }
}

bool Journal::writeAll(const std::string& line) const {
    for (std::size_t written = 0; written < line.size();) {
        const ssize_t count = ::write(descriptor, line.data() + written, line.size() - written);
        if (count >= 0) {
            written += static_cast<std::size_t>(count);
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

bool Journal::append(std::size_t size, const std::string& line) const {
    const auto end = static_cast<off_t>(size);
    if (::ftruncate(descriptor, end) != 0) {
        return false;
    }
    if (::lseek(descriptor, end, SEEK_SET) == end && writeAll(line) && ::fsync(descriptor) == 0) {
        return true;
    }
    const int reason = errno;
    if (::ftruncate(descriptor, end) != 0) {
        // Nothing more can be done: a cut line is dropped by the next writer or reader.
        errno = reason;
    }
    errno = reason;
    return false;
}

bool syncFolder(const std::string& systemFolder) {
    const int folder = ::open(systemFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0) {
        return false;
    }
    const bool synced = ::fsync(folder) == 0;
    ::close(folder);
    return synced;
}

/// Bytes of `text` up to and with its last line feed.
std::size_t wholeLines(const std::string& text) {
    return text.rfind('\n') + 1;
}

std::vector<DelayedMove> parseJournal(const std::string& text) {
    std::vector<DelayedMove> requests;
    const std::size_t end = wholeLines(text);
    for (std::size_t at = 0; at < end;) {
        const std::size_t lineEnd = text.find('\n', at);
        if (auto request = parseLine(std::string_view(text).substr(at, lineEnd - at))) {
            requests.push_back(std::move(*request));
        }
        at = lineEnd + 1;
    }
    return requests;
}

bool isAbsent(const std::string& path) {
    struct stat status {};
    return ::lstat(resolvePath(path).c_str(), &status) != 0 &&
           (errno == ENOENT || errno == ENOTDIR);
}

bool applyRequest(const DelayedMove& request) {
    if (isAbsent(request.from)) {
        return true;
    }
    if (request.to) {
        return moveNow(request.from, *request.to, request.replace);
    }
    const std::string target = resolvePath(request.from);
    return removeNow(request.from) || ::rmdir(target.c_str()) == 0;
}

} // namespace

bool appendDelayedMove(const std::string& hostFolder, const DelayedMove& request) {
    if (hostFolder.empty()) {
        return fail(errorPathNotFound);
    }
    const std::string path = journalPath(hostFolder);
    const Journal journal(path, O_RDWR | O_CREAT);
    std::string text;
    if (!journal.isOpen() || !journal.readAll(text) ||
        !journal.append(wholeLines(text), formatLine(request))) {
        return failFromErrno(path);
    }
    return !text.empty() || syncFolder(resolvePath(hostFolder)) || failFromErrno(path);
}

std::vector<DelayedMove> readDelayedMoves(const std::string& hostFolder) {
    const Journal journal(journalPath(hostFolder), O_RDONLY);
    std::string text;
    return journal.isOpen() && journal.readAll(text) ? parseJournal(text)
                                                     : std::vector<DelayedMove>();
}

ApplyResult applyDelayedMoves(const std::string& hostFolder) {
    const std::string path = journalPath(hostFolder);
    const Journal journal(path, O_RDONLY);
    ApplyResult result;
    std::string text;
    if (!journal.isOpen() || !journal.readAll(text)) {
        return result;
    }
    for (DelayedMove& request : parseJournal(text)) {
        if (applyRequest(request)) {
            ++result.applied;
        } else {
            result.failures.push_back({std::move(request), lastError()});
        }
    }
    ::unlink(path.c_str());
    return result;
}

} // namespace platform::posix
