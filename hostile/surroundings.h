#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "hostile/disk.h"

/// What lies around the client while hostile things are done to it. One thread; one at a time.
namespace hostile {

/// Places outside of a trial's own folder that others write to as well: the system's root, its
/// folder for temporary files, the user's home and where the program was started. There only an
/// entry with the name of a hostile one counts, and none in the folder of another test.
class WideWatch {
public:
    explicit WideWatch(std::set<std::string> names);

    /// Entries with such a name that are new, gone, other or written anew since the watch began,
    /// as `differences` tells them. One of an earlier watch counts again when it is written again.
    std::vector<std::string> findings() const;

private:
    Listing look() const; ///< with the time of the last change

    std::set<std::string> names;
    std::set<std::filesystem::path> places;
    Listing known;
};

/// A folder of a trial's own, made in the system's one for such, that goes with the object.
/// While it is there it holds all that a process takes for its own: working folder, home, and
/// the folder for temporary files. In each lies a bystander.
class Surroundings {
public:
    Surroundings();
    ~Surroundings();
    Surroundings(const Surroundings&) = delete;
    Surroundings& operator=(const Surroundings&) = delete;

    const std::filesystem::path& folder() const { return root; }

private:
    void pointTo(const char* variable, const std::filesystem::path& place);

    std::filesystem::path former;
    std::filesystem::path root;
    std::map<std::string, std::optional<std::string>> variables; ///< as they were
};

} // namespace hostile
