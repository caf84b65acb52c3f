#include "platform/paths.h"

#include "platform/files.h"

#include <algorithm>
#include <cstddef>

namespace platform {

namespace {

constexpr char separator = '\\';

bool hasDrive(const std::string& path) {
    return path.size() > 1 && path[1] == ':';
}

bool isUnc(const std::string& path) {
    return path.starts_with("\\\\");
}

std::size_t findSeparator(const std::string& path, std::size_t from) {
    return std::min(path.find(separator, from), path.size());
}

/// Length of what ".." does not take away: "\", "C:\", "C:", or server and share.
std::size_t rootLength(const std::string& path) {
    if (isUnc(path)) {
        const std::size_t share = findSeparator(path, 2);
        return share == path.size() ? share : findSeparator(path, share + 1);
    }
    if (hasDrive(path)) {
        return path.size() > 2 && path[2] == separator ? 3 : 2;
    }
    return path.starts_with(separator) ? 1 : 0;
}

/// A path under construction, taken element by element.
class DotResolver {
public:
    explicit DotResolver(std::string fixedRoot)
        : resolved(std::move(fixedRoot)), root(resolved.size()), joined(isUnc(resolved)) {}

    void take(const std::string& element) {
        if (element == "..") {
            takeParent();
        } else if (element != ".") {
            append(element);
        }
    }

    std::string result() const {
        if (resolved.empty()) {
            return "\\";
        }
        return resolved.size() == 2 && hasDrive(resolved) ? resolved + separator : resolved;
    }

private:
    void append(const std::string& element) {
        if (joined) {
            resolved += separator;
        }
        resolved += element;
        joined = true;
    }

    void takeParent() {
        if (resolved.empty()) {
            append("..");
            return;
        }
        const std::size_t last = resolved.rfind(separator);
        const bool isLastOfRelative = last == std::string::npos && root == 0;
        if (isLastOfRelative) {
            // What climbs out of a relative path starts again from the root.
            resolved = separator;
            root = 1;
        } else {
            resolved.resize(last == std::string::npos ? root : std::max(last, root));
        }
        joined = resolved.size() > root || isUnc(resolved);
    }

    std::string resolved;
    std::size_t root;
    bool joined; ///< whether the next element needs a separator before it
};

std::string resolveDots(const std::string& path) {
    const std::size_t root = rootLength(path);
    DotResolver resolver(path.substr(0, root));
    std::size_t at = isUnc(path) ? root + 1 : root;
    for (; at < path.size() || (at == path.size() && path.ends_with(separator) && at > root);) {
        const std::size_t end = findSeparator(path, at);
        resolver.take(path.substr(at, end - at));
        at = end + 1;
    }
    return resolver.result();
}

} // namespace

std::string removeFileSpec(const std::string& path) {
    std::size_t end = std::min<std::size_t>(path.find_first_not_of(separator), 2);
    end = std::min(end, path.size());
    for (std::size_t at = end; at < path.size(); ++at) {
        if (path[at] == separator) {
            end = at;
        } else if (path[at] == ':') {
            at += path.compare(at + 1, 1, "\\") == 0 ? 1 : 0;
            end = at + 1;
        }
    }
    return path.substr(0, end);
}

std::string appendPath(const std::string& path, const std::string& more) {
    std::string tail =
        isUnc(more) ? more : more.substr(std::min(more.find_first_not_of(separator), more.size()));
    std::string joined = path;
    if (path.empty() || !isRelativePath(tail)) {
        joined = tail;
    } else if (!tail.empty()) {
        joined += (path.ends_with(separator) ? "" : "\\") + tail;
    }
    return joined.size() < maxPath ? resolveDots(joined) : std::string();
}

bool isRelativePath(const std::string& path) {
    return !path.starts_with(separator) && !hasDrive(path);
}

std::string fileNameOf(const std::string& path) {
    const auto isBorder = [](char c) {
        return c == separator || c == '/' || c == ':';
    };
    const auto isSlash = [](char c) {
        return c == separator || c == '/';
    };
    std::size_t start = 0;
    for (std::size_t at = 0; at + 1 < path.size(); ++at) {
        if (isBorder(path[at]) && !isSlash(path[at + 1])) {
            start = at + 1;
        }
    }
    return path.substr(start);
}

} // namespace platform
