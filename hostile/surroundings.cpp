#include "hostile/surroundings.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace hostile {

namespace {

namespace fs = std::filesystem;

constexpr int wideDepth = 2;

/// What tests and sandboxes that run meanwhile call their folders for temporary files. They have
/// files of their own under names like the hostile ones.
constexpr std::array neighbours{"xrefresher-test-", "xsandbox-", "xreport-",
                                "xfaults-",         "xhostile-", "platform-"};

bool isOfNeighbour(const fs::path& place) {
    const std::string name = place.filename().string();
    return std::any_of(neighbours.begin(), neighbours.end(),
                       [&](const char* begin) { return name.starts_with(begin); });
}

/// Nothing more than that it is there, where somebody takes it away or locks it meanwhile.
std::string toldWithTime(const fs::directory_entry& entry) {
    try {
        const auto changed = fs::last_write_time(entry.path()).time_since_epoch();
        return told(entry) + " " + std::to_string(changed.count());
    } catch (const fs::filesystem_error&) {
        return "";
    }
}

} // namespace

WideWatch::WideWatch(std::set<std::string> hostileNames)
    : names(std::move(hostileNames)), places{"/", fs::temp_directory_path(), fs::current_path()} {
    if (const char* const home = std::getenv("HOME")) {
        places.insert(home);
    }
    known = look();
}

std::vector<std::string> WideWatch::findings() const {
    return differences(known, look(), {});
}

Listing WideWatch::look() const {
    constexpr auto options = fs::directory_options::skip_permission_denied;
    Listing found;
    for (const fs::path& place : places) {
        std::error_code gone; // others come and go there
        auto entry = fs::recursive_directory_iterator(place, options, gone);
        for (; !gone && entry != fs::end(entry); entry.increment(gone)) {
            if (names.count(entry->path().filename().string()) > 0) {
                found[entry->path().string()] = toldWithTime(*entry);
            }
            if (entry.depth() + 1 >= wideDepth || place == "/" || isOfNeighbour(*entry)) {
                entry.disable_recursion_pending();
            }
        }
    }
    return found;
}

Surroundings::Surroundings() : former(fs::current_path()) {
    std::string pattern = (fs::temp_directory_path() / "xhostile-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("no folder can be made like " + pattern);
    }
    root = pattern;
    for (const char* const name : {"cwd", "home", "tmp"}) {
        fs::create_directory(root / name);
        std::ofstream(root / name / "bystander") << "as it was";
    }
    fs::current_path(root / "cwd");
    pointTo("HOME", root / "home");
    pointTo("TMPDIR", root / "tmp");
}

Surroundings::~Surroundings() {
    std::error_code ignored;
    fs::current_path(former, ignored);
    fs::remove_all(root, ignored);
    for (const auto& [name, value] : variables) {
        value ? ::setenv(name.c_str(), value->c_str(), 1) : ::unsetenv(name.c_str());
    }
}

void Surroundings::pointTo(const char* variable, const fs::path& place) {
    const char* const value = std::getenv(variable);
    variables[variable] = value == nullptr ? std::nullopt : std::optional<std::string>(value);
    ::setenv(variable, place.c_str(), 1);
}

} // namespace hostile
