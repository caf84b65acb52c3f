#include "hostile/disk.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "sandbox/materials/content.h"

namespace hostile {

namespace {

namespace fs = std::filesystem;

bool isMeant(const std::string& path, const std::vector<std::string>& mayChange) {
    return std::any_of(mayChange.begin(), mayChange.end(), [&](const std::string& begin) {
        return path == begin || (begin.ends_with('/') && path.starts_with(begin));
    });
}

} // namespace

std::string told(const fs::directory_entry& entry) {
    if (entry.is_symlink()) {
        return "link to " + fs::read_symlink(entry.path()).string();
    }
    if (!entry.is_regular_file()) {
        return entry.is_directory() ? "folder" : "other";
    }
    std::ifstream file(entry.path(), std::ios::binary);
    const materials::Bytes bytes{std::istreambuf_iterator<char>(file), {}};
    return std::to_string(bytes.size()) + " " + materials::md5Hex(bytes);
}

Listing listed(const fs::path& folder) {
    Listing listing;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        listing[entry.path().lexically_relative(folder).generic_string()] = told(entry);
    }
    return listing;
}

std::vector<std::string> differences(const Listing& before, const Listing& after,
                                     const std::vector<std::string>& mayChange) {
    std::vector<std::string> found;
    const auto add = [&](const char* sign, const std::string& path) {
        if (!isMeant(path, mayChange)) {
            found.push_back(sign + path);
        }
    };
    for (const auto& [path, what] : before) {
        const auto now = after.find(path);
        if (now == after.end()) {
            add("-", path);
        } else if (now->second != what) {
            add("!", path);
        }
    }
    for (const auto& [path, what] : after) {
        if (before.count(path) == 0) {
            add("+", path);
        }
    }
    return found;
}

} // namespace hostile
