#include "platform/paths.h"
#include "fuzz/fuzz.h"
#include "platform/asciicase.h"
#include "platform/files.h"
#include "platform/posix/systempath.h"
#include "platform/text.h"
#include "tests/platform/temporaryfolder.h"
#include "updatekelvar/task/materialnames.h"

// Paths that the platform names, on their way to the disk. Input: a path, and another in the lines
// behind.

namespace {

/// A client's folder, with names that differ in nothing but their case.
class MappedClient {
public:
    MappedClient() {
        for (const char* name : {"client/Bin", "client/bin", "client/data.d", "beside"}) {
            std::filesystem::create_directories(folder.onDisk(name));
        }
        for (const char* name :
             {"client/Bin/A.dll", "client/bin/a.dll", "client/data.d/X", "beside/other.dll"}) {
            folder.write(name, std::string("content"));
        }
    }

    std::string path() const { return folder.path("client"); }

    /// Whether a path of the system lies strictly below the folder.
    bool holds(const std::string& systemPath) const {
        const std::string below =
            std::filesystem::path(systemPath).lexically_normal().generic_string();
        const std::string start = folder.onDisk("client").generic_string() + "/";
        return below.starts_with(start) && below.size() > start.size();
    }

private:
    TemporaryFolder folder;
};

void mappingKeepsNames(const std::string& path) {
    const std::string mapped = platform::posix::resolvePath(path);
    std::string wanted = fuzz::zeroTerminated(path);
    std::replace(wanted.begin(), wanted.end(), '\\', '/');
    fuzz::require(mapped.size() == wanted.size() && platform::equalIgnoringCase(mapped, wanted),
                  "a mapped path has the same names but for their case", mapped);
    fuzz::require(platform::posix::resolvePath(mapped) == mapped, "a mapped path stays", mapped);
}

void absolutePathIsPlain(const std::string& path) {
    const std::string whole = platform::posix::absoluteClientPath(path);
    fuzz::require(whole.starts_with('\\') && whole.find("\\\\") == whole.npos &&
                      whole.find('/') == whole.npos,
                  "an absolute path has single separators", whole);
    fuzz::require(platform::posix::absoluteClientPath(whole) == whole, "an absolute path stays",
                  whole);
}

void partsComeFromThePath(const std::string& path, const std::string& more) {
    fuzz::require(path.ends_with(platform::fileNameOf(path)), "a file's name ends its path");
    const std::string folder = platform::removeFileSpec(path);
    fuzz::require(path.starts_with(folder), "a folder begins its files' paths");
    fuzz::require(platform::removeFileSpec(folder).size() <= folder.size(), "up is never longer");
    fuzz::require(platform::appendPath(path, more).size() < platform::maxPath,
                  "a joined path fits its buffer");
}

void targetsStayInTheClient(const MappedClient& client, const std::string& path) {
    if (!materialnames::staysBelow(path)) {
        fuzz::require(!materialnames::isPlainName(path), "a plain name stays below", path);
        return;
    }
    const std::string target = client.path() + "\\" + path;
    fuzz::require(client.holds(platform::posix::resolvePath(target)),
                  "a target lies below the client's folder", path);
    // Joining knows one separator only: whoever joins a target turns the other first.
    std::string turned = path;
    std::replace(turned.begin(), turned.end(), '/', '\\');
    const std::string joined = platform::appendPath(client.path(), turned);
    fuzz::require(joined.empty() || client.holds(platform::posix::resolvePath(joined)),
                  "a joined target too", joined);
    if (materialnames::isPlainName(path)) {
        fuzz::require(platform::fileNameOf(path) == path, "a plain name is a file's name", path);
        fuzz::require(materialnames::isSameFile(path, path), "a file is itself", path);
    }
}

} // namespace

FUZZ_TARGET(paths) {
    static const MappedClient client;
    std::string more = input;
    const std::string path = fuzz::takeLine(more);
    mappingKeepsNames(client.path() + "\\" + path);
    absolutePathIsPlain(path);
    partsComeFromThePath(path, more);
    targetsStayInTheClient(client, path);
    const std::string text = platform::toUtf8(platform::toWide(path));
    fuzz::require(platform::toUtf8(platform::toWide(text)) == text, "repaired text stays", text);
}
