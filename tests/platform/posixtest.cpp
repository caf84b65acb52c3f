// What holds on this system only: how client paths become paths of the system, and the
// journal that stands in for the system's list of delayed moves.
#include "platform/cabinet.h"
#include "platform/fileversion.h"
#include "platform/lasterror.h"
#include "platform/modules.h"
#include "platform/paths.h"
#include "platform/posix/delayedmoves.h"
#include "platform/posix/systempath.h"
#include "platform/posix/watchedfolders.h"
#include "platform/process.h"
#include "platform/text.h"
#include "sandbox/materials/cabwriter.h"
#include "sandbox/materials/pefile.h"
#include "sandbox/platform/delayed.h"
#include "sandbox/platform/heldfile.h"
#include "temporaryfolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>
#include <thread>

namespace {

using namespace platform;
using posix::DelayedMove;
using posix::readDelayedMoves;

TEST(SystemPath, TakesTheExactNameFirst) {
    const TemporaryFolder folder;
    std::filesystem::create_directories(folder.onDisk("Sub/inner"));
    for (const char* name : {"b.txt", "B.TXT", "Sub/C.txt", "Sub/c.TXT"}) {
        folder.write(name, name);
    }
    const std::pair<const char*, const char*> rows[] = {{"b.txt", "b.txt"},
                                                        {"B.TXT", "B.TXT"},
                                                        {"B.txt", "B.TXT"},
                                                        {"sub\\c.txt", "Sub/C.txt"},
                                                        {"sub/INNER\\x", "Sub/inner/x"},
                                                        {"sub\\absent\\INNER", "Sub/absent/INNER"},
                                                        {"sub\\\\c.TXT", "Sub//c.TXT"}};
    for (const auto& [path, mapped] : rows) {
        EXPECT_EQ(systemPath(folder.path(path)), folder.onDisk("").string() + mapped) << path;
    }
    EXPECT_EQ(systemPath(std::string("a\0b", 3)), "a");
    EXPECT_FALSE(fileExists(""));
    EXPECT_FALSE(fileExists(folder.path("b.txt\\x")));
    EXPECT_EQ(lastError(), errorPathNotFound);
}

TEST(SystemPath, FollowsAFolderOfManyNames) {
    const TemporaryFolder folder;
    const auto mapped = [&folder](const std::string& name) {
        return std::filesystem::path(systemPath(folder.path("many\\" + name))).filename().string();
    };
    std::filesystem::create_directories(folder.onDisk("many"));
    for (int i = 0; i < 200; ++i) {
        folder.write("many/name" + std::to_string(i), "");
    }
    EXPECT_EQ(mapped("NAME7"), "name7");
    folder.write("many/late", "");
    EXPECT_EQ(mapped("LATE"), "late");
    folder.write("many/Late", "");
    EXPECT_EQ(mapped("LATE"), "Late"); // the first in the order of bytes
    std::filesystem::remove(folder.onDisk("many/name7"));
    EXPECT_EQ(mapped("NAME7"), "NAME7");
    std::filesystem::rename(folder.onDisk("many/name8"), folder.onDisk("many/other"));
    EXPECT_EQ(mapped("NAME8"), "NAME8");
    EXPECT_EQ(mapped("OTHER"), "other");
    std::filesystem::rename(folder.onDisk("many"), folder.onDisk("before"));
    EXPECT_EQ(mapped("OTHER"), "OTHER");
    std::filesystem::create_directories(folder.onDisk("many"));
    folder.write("many/otHer", "");
    EXPECT_EQ(mapped("OTHER"), "otHer");
}

TEST(SystemPath, FollowsMoreFoldersThanAreWatched) {
    const TemporaryFolder folder;
    constexpr int folders = 7;
    const auto mapped = [&folder](int number, const std::string& name) {
        const std::string path = folder.path("many" + std::to_string(number) + "\\" + name);
        return std::filesystem::path(systemPath(path)).filename().string();
    };
    for (int number = 0; number < folders; ++number) {
        std::filesystem::create_directories(folder.onDisk("many" + std::to_string(number)));
        for (int i = 0; i < 50; ++i) {
            folder.write("many" + std::to_string(number) + "/name" + std::to_string(i), "");
        }
    }
    for (int round = 0; round < 3; ++round) {
        for (int number = 0; number < folders; ++number) {
            const std::string late = "late" + std::to_string(round);
            EXPECT_EQ(mapped(number, "NAME7"), "name7") << round << ' ' << number;
            EXPECT_EQ(mapped(0, "NAME7"), "name7") << round; // never the one to go
            folder.write("many" + std::to_string(number) + '/' + late, "");
            EXPECT_EQ(mapped(number, "LATE" + std::to_string(round)), late) << number;
        }
    }
}

TEST(SystemPath, ALinkThatLeadsNowhereIsNoOtherFile) {
    const TemporaryFolder folder;
    folder.write("A.DLL", "other");
    std::filesystem::create_symlink("gone", folder.onDisk("a.dll"));
    EXPECT_FALSE(fileExists(folder.path("a.dll")));
    EXPECT_EQ(lastError(), errorFileNotFound);
    EXPECT_EQ(openFile(folder.path("a.dll"), "rb"), nullptr);
    EXPECT_TRUE(fileExists(folder.path("a.DLL")));
}

TEST(SystemPath, OnlyAFolderThatIsKnownWholeIsWatched) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.onDisk("many"));
    const std::string many = folder.onDisk("many").string();
    const auto exchange = [&] {
        std::filesystem::rename(many, many + "Before");
        std::filesystem::create_directory(many);
    };
    posix::WatchedFolders watched;
    for (const bool isWhole : {false, true}) {
        watched.add(many, [&](const posix::WatchedFolders::NameStep& step) {
            step("name");
            if (isWhole) {
                exchange();
            }
            return isWhole;
        });
        EXPECT_EQ(watched.find(many, "NAME"), std::nullopt) << isWhole;
    }
    EXPECT_EQ(watched.find(many + "Before", "NAME"), std::nullopt);
    watched.add(many, [](const posix::WatchedFolders::NameStep& step) {
        step("name");
        return true;
    });
    EXPECT_EQ(watched.find(many, "NAME"), std::optional<std::string>("name"));
}

/// Lets no file of this process grow beyond a size, as a full disk would.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t size) {
        EXPECT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
        EXPECT_NE(std::signal(SIGXFSZ, SIG_IGN), SIG_ERR);
        const rlimit small{size, old.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &small);
    }
    ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &old); }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit old{};
};

class DelayedMoves : public testing::Test {
protected:
    /// A request about files of the folder; no `to` means delete.
    void delayed(const std::string& from, std::optional<std::string> to, bool replace = true) {
        const DelayedMove request{folder.path(from), to ? std::optional(folder.path(*to)) : to,
                                  to && replace};
        ASSERT_TRUE(posix::appendDelayedMove(folder.path(), request));
        requests.push_back(request);
    }
    posix::ApplyResult restart() { return posix::applyDelayedMoves(folder.path()); }
    std::vector<DelayedMove> noted() { return readDelayedMoves(folder.path()); }

    TemporaryFolder folder;
    std::vector<DelayedMove> requests;
};

TEST_F(DelayedMoves, KeepAnyBytesOfAName) {
    for (const char* name : {"plain", "tab\there", "line\nfeed", "100%", "%0a", "\x7F\xFF\x01"}) {
        delayed(name, std::nullopt);
        delayed(name, std::string(name) + "\r");
        delayed(name, "x", false);
    }
    EXPECT_EQ(noted(), requests);
}

TEST_F(DelayedMoves, AreCarriedOutInOrderAndAFailureIsTold) {
    for (const char* name : {"new", "old", "temp", "held"}) {
        folder.write(name, name);
    }
    delayed("new", "missing\\target");
    delayed("new", "temp", false);
    delayed("new", "held");
    delayed("OLD", "older");
    delayed("new", "old");
    delayed("temp", std::nullopt);
    delayed("absent", "older");
    delayed("absent", std::nullopt);
    const sandbox::HeldFile held(folder.onDisk("held"));
    const auto result = restart();
    constexpr Error errors[] = {errorPathNotFound, errorAlreadyExists, errorSharingViolation};
    ASSERT_EQ(result.failures.size(), std::size(errors));
    for (std::size_t index = 0; index < std::size(errors); ++index) {
        EXPECT_EQ(result.failures[index].error, errors[index]);
        EXPECT_EQ(result.failures[index].request, requests[index]);
    }
    EXPECT_EQ(result.applied, 5U);
    EXPECT_EQ(folder.read("old"), "new");
    EXPECT_EQ(folder.read("older"), "old");
    EXPECT_EQ(folder.entryCount(), 3U) << "the journal is gone";
}

TEST_F(DelayedMoves, ACutLastLineIsNoRequest) {
    delayed("a", "b");
    delayed("c", std::nullopt);
    const std::string journal = *folder.read(posix::delayedMovesJournal);
    for (std::size_t size = 0; size < journal.size(); ++size) {
        folder.write(posix::delayedMovesJournal, journal.substr(0, size));
        EXPECT_EQ(noted().size(), size <= journal.find('\n') ? 0U : 1U) << size;
    }
    delayed("d", std::nullopt);
    EXPECT_EQ(noted(), (std::vector<DelayedMove>{requests[0], requests[2]}));
}

TEST_F(DelayedMoves, ARequestThatDoesNotFitOnTheDiskLeavesNothing) {
    delayed("a", "b");
    const std::string journal = *folder.read(posix::delayedMovesJournal);
    {
        const FileSizeLimit full(journal.size() + 5);
        EXPECT_FALSE(posix::appendDelayedMove(folder.path(), requests[0]));
    }
    EXPECT_EQ(folder.read(posix::delayedMovesJournal), journal);
}

TEST_F(DelayedMoves, ALineThatIsNoRequestIsPassedOverAndTold) {
    const auto faults = [&] {
        return sandbox::pendingList(folder.onDisk("")).faults.size();
    };
    EXPECT_EQ(faults(), 0U);

    delayed("a", "b");
    const std::string good = *folder.read(posix::delayedMovesJournal);
    for (const char* line :
         {"", "copy\ta\tb", "delete", "delete\t", "delete\ta\tb", "move\ta", "move\ta\t",
          "replace\ta\tb\tc", "delete\t%", "delete\t%4", "delete\t%4z", "delete\t%zz"}) {
        folder.write(posix::delayedMovesJournal, std::string(line) + "\n" + good);
        EXPECT_EQ(noted(), requests) << line;
        EXPECT_EQ(faults(), 1U) << line;
    }
    std::filesystem::remove(folder.onDisk(posix::delayedMovesJournal));
    std::filesystem::create_directory(folder.onDisk(posix::delayedMovesJournal));
    EXPECT_EQ(faults(), 1U) << "a journal that cannot be read";
}

TEST_F(DelayedMoves, OfAFileInUseAreNotedBesideTheHost) {
    const std::string host = removeFileSpec(executablePath());
    const std::string from = folder.write("file", "text");
    const sandbox::HeldFile held(folder.onDisk("file"));
    EXPECT_FALSE(moveFile(folder.path("absent"), nullptr, moveDelayUntilReboot));
    EXPECT_EQ(lastError(), errorFileNotFound);
    EXPECT_TRUE(moveFile(folder.path("\\file"), nullptr, moveDelayUntilReboot));
    EXPECT_EQ(readDelayedMoves(host), (std::vector<DelayedMove>{{from, {}, false}}));
    EXPECT_EQ(folder.read("file"), "text");
    EXPECT_TRUE(removeFile(host + '\\' + posix::delayedMovesJournal));
    EXPECT_FALSE(posix::appendDelayedMove(folder.path("absent"), {from, {}, false}));
    EXPECT_EQ(lastError(), errorPathNotFound);
}

TEST(PosixCabinet, AMemberThatDoesNotFitIsRemoved) {
    using namespace materials;
    const TemporaryFolder folder;
    const std::string cabinet =
        folder.write("in.cab", buildCabinet(CabMethod::mszip, {{"a", Bytes(100000, 'a')}}));
    {
        const FileSizeLimit full(50000);
        EXPECT_FALSE(iterateCabinet(cabinet, [&](auto, CabinetMember& member) {
            member.fullTargetName = folder.path("a");
            return cabinetDoIt;
        }));
    }
    EXPECT_EQ(folder.entryCount(), 1U);
}

TEST(PosixModules, MayStandBesideAnImage) {
    const TemporaryFolder folder;
    const std::string image = folder.write("carried.dll", materials::buildPeFile({{1, 2, 3, 4}}));
    const std::wstring name = toWide(image);
    EXPECT_EQ(loadModule(name.c_str()), nullptr);
    EXPECT_EQ(lastError(), errorBadExeFormat);
    std::filesystem::copy_file(systemPath(removeFileSpec(executablePath()) + "\\PlatformTest.dll"),
                               folder.onDisk("carried.dll.so"));
    const ModuleHandle module = loadModule(name.c_str());
    EXPECT_NE(module, nullptr);
    EXPECT_EQ(findModule(L"CARRIED.dll"), module);
    EXPECT_EQ(readFileVersion(image), (FileVersion{1, 2, 3, 4}));
    freeModule(module);
}

} // namespace
