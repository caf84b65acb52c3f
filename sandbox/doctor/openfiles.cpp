#include "sandbox/doctor/openfiles.h"

#include <algorithm>
#include <fstream>
#include <set>

#include "sandbox/common/clientpath.h"
#include "sandbox/platform/filewrites.h"

namespace sandbox::doctor {

namespace fs = std::filesystem;

namespace {

std::string contentOf(const fs::path& file) {
    return readFile(file).value_or(""); // the process may end at any moment
}

/// The running processes, by their folders in /proc.
std::vector<fs::path> processes() {
    std::vector<fs::path> found;
    std::error_code error;
    for (fs::directory_iterator at("/proc", error), end; !error && at != end; at.increment(error)) {
        const std::string name = at->path().filename().string();
        if (name.find_first_not_of("0123456789") == std::string::npos) {
            found.push_back(at->path());
        }
    }
    return found;
}

bool belongsTo(const fs::path& process, const fs::path& wine) {
    const std::string zero(1, '\0');
    const std::string environment = zero + contentOf(process / "environ");
    return environment.find(zero + "WINEPREFIX=" + wine.string() + zero) != std::string::npos;
}

/// A Windows program by the path that it was started with, any other by its file.
std::string programOf(const fs::path& process, bool underWine) {
    const std::string command = contentOf(process / "cmdline");
    std::string first = command.substr(0, command.find('\0'));
    if (underWine && first.find('\\') != std::string::npos) {
        return first;
    }
    std::error_code error;
    return fs::read_symlink(process / "exe", error).string();
}

class Search {
public:
    explicit Search(const Places& from) : underWine(!from.wine.empty()), wine(from.wine) {
        std::error_code error;
        client = fs::canonical(from.client, error);
    }

    std::vector<OpenFile> run() {
        for (const fs::path& process : processes()) {
            if (!underWine || belongsTo(process, wine)) {
                lookAt(process);
            }
        }
        return std::move(found);
    }

private:
    void lookAt(const fs::path& process) {
        std::set<std::string> files;
        std::error_code error;
        for (fs::directory_iterator at(process / "fd", error), end; !error && at != end;
             at.increment(error)) {
            std::error_code gone;
            const fs::path file = fs::read_symlink(at->path(), gone);
            if (isOfClient(file) && (underWine || isLocked(process, at->path().filename()))) {
                files.insert(relative(file));
            }
        }
        if (underWine) {
            addMapped(process, files);
        }
        const long long id = std::stoll(process.filename().string());
        for (const std::string& file : files) {
            found.push_back({file, id, programOf(process, underWine)});
        }
    }

    bool isOfClient(const fs::path& file) const {
        const auto [end, at] =
            std::mismatch(client.begin(), client.end(), file.begin(), file.end());
        std::error_code error;
        return !client.empty() && end == client.end() && at != file.end() &&
               fs::is_regular_file(file, error);
    }

    std::string relative(const fs::path& file) const {
        return toClientPath(file.lexically_relative(client));
    }

    static bool isLocked(const fs::path& process, const fs::path& descriptor) {
        const std::string facts = contentOf(process / "fdinfo" / descriptor);
        return facts.find("FLOCK") != std::string::npos;
    }

    void addMapped(const fs::path& process, std::set<std::string>& files) const {
        std::ifstream maps(process / "maps");
        for (std::string line; std::getline(maps, line);) {
            const std::size_t path = line.find('/');
            if (path != std::string::npos && isOfClient(line.substr(path))) {
                files.insert(relative(line.substr(path)));
            }
        }
    }

    bool underWine;
    fs::path wine;
    fs::path client;
    std::vector<OpenFile> found;
};

} // namespace

std::vector<OpenFile> openFiles(const Places& places) {
    return Search(places).run();
}

bool isWineRunning(const Places& places) {
    const std::vector<fs::path> all = processes();
    return std::any_of(all.begin(), all.end(),
                       [&](const fs::path& process) { return belongsTo(process, places.wine); });
}

} // namespace sandbox::doctor
