#include "platform/files.h"

#include "platform/cabinet.h"
#include "platform/fileversion.h"
#include "platform/ini.h"
#include "platform/lasterror.h"
#include "sandbox/platform/heldfile.h"
#include "temporaryfolder.h"
#include "wine.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using sandbox::HeldFile;

enum class There { nothing, aFile, aFolder };
using enum There;

class Files : public testing::Test {
protected:
    void make(const std::string& name, There what) const {
        std::filesystem::remove_all(folder.onDisk(name));
        if (what == aFile) {
            folder.write(name, "content of " + name);
        } else if (what == aFolder) {
            std::filesystem::create_directory(folder.onDisk(name));
        }
    }

    /// The error of what failed; none when it has worked.
    static std::uint32_t errorOf(bool worked) { return worked ? errorNone : lastError(); }
    std::uint32_t move(const std::string& from, const std::string& to,
                       std::uint32_t flags = 0) const {
        return errorOf(moveFile(folder.path(from), folder.path(to).c_str(), flags));
    }
    std::uint32_t remove(const std::string& name) const {
        return errorOf(removeFile(folder.path(name)));
    }
    std::uint32_t makeSub(const std::string& name) const {
        return errorOf(makeFolder(folder.path(name)));
    }
    std::vector<std::string> list(const std::string& name = {}) const {
        std::vector<std::string> names;
        const auto entries = listFolder(folder.path(name));
        for (const FolderEntry& entry : entries.value()) {
            names.push_back(entry.name + (entry.isFolder ? "\\" : ""));
        }
        std::sort(names.begin(), names.end());
        return names;
    }
    static bool opens(const std::string& path, const char* mode) {
        std::FILE* file = openFile(path, mode);
        return file && std::fclose(file) == 0;
    }
    static bool creates(const std::string& path) { return opens(path, "wb"); }

    TemporaryFolder folder;
};

TEST_F(Files, MoveAnswersByWhatIsThere) {
    constexpr std::uint32_t plain = 0;
    constexpr std::uint32_t replace = moveReplaceExisting;
    const struct {
        There from, to;
        std::uint32_t flags, error;
    } rows[] = {{nothing, nothing, plain, errorFileNotFound},
                {nothing, aFile, replace, errorFileNotFound},
                {aFile, nothing, plain, errorNone},
                {aFile, nothing, replace, errorNone},
                {aFile, aFile, plain, errorAlreadyExists},
                {aFile, aFile, replace, errorNone},
                {aFile, aFolder, plain, errorAlreadyExists},
                {aFile, aFolder, replace, errorAccessDenied},
                {aFolder, nothing, plain, errorNone},
                {aFolder, aFile, plain, errorAlreadyExists},
                {aFolder, aFile, replace, errorAccessDenied},
                {aFolder, aFolder, replace, errorAccessDenied}};
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        if (onWine() && row.from == aFolder && row.to == aFile && row.flags == replace) {
            continue; // Wine puts the folder in the file's place
        }
        make("from", row.from);
        make("to", row.to);
        EXPECT_EQ(move("from", "to", row.flags), row.error);
        const bool isMoved = row.error == errorNone;
        EXPECT_EQ(fileExists(folder.path("from")), row.from != nothing && !isMoved);
        if ((isMoved ? row.from : row.to) == aFile) {
            EXPECT_EQ(folder.read("to"), isMoved ? "content of from" : "content of to");
        }
    }
}

TEST_F(Files, NamesMatchWithoutRegardToCase) {
    make("Sub", aFolder);
    folder.write("Sub/Name.Dll", "text");
    EXPECT_TRUE(fileExists(folder.path("sUB\\nAME.dLL")));
    EXPECT_TRUE(fileExists(folder.path() + "/Sub\\\\name.dll"));
    EXPECT_TRUE(canAccess(folder.path("sub\\name.dll")));
    EXPECT_FALSE(canAccess(folder.path("sub\\name.dl")));
    EXPECT_TRUE(creates(folder.path("SUB\\NEW.TXT")));
    EXPECT_EQ(move("SUB\\NAME.DLL", "sub\\new.txt", moveReplaceExisting), errorNone);
    EXPECT_EQ(list("sub"), (std::vector<std::string>{"..\\", ".\\", "NEW.TXT"}));
    EXPECT_EQ(move("sub\\NEW.TXT", "sub\\New.txt"), errorNone) << "a file onto itself";
    if (!onWine()) { // where the name stays as it was
        EXPECT_EQ(list("sub"), (std::vector<std::string>{"..\\", ".\\", "New.txt"}));
    }
    EXPECT_EQ(folder.read("Sub/New.txt"), "text");
}

TEST_F(Files, AFileInUseStaysWhereItIs) {
    make("from", aFile);
    make("to", aFile);
    {
        const HeldFile held(folder.onDisk("from"));
        ASSERT_TRUE(held.isHeld());
        EXPECT_EQ(fileSize(folder.path("from")), 15U);
        EXPECT_TRUE(opens(folder.path("from"), "rb"));
        EXPECT_EQ(move("from", "new"), errorSharingViolation);
        EXPECT_EQ(remove("from"), errorSharingViolation);
    }
    {
        const HeldFile held(folder.onDisk("to"));
        ASSERT_TRUE(held.isHeld());
        const std::uint32_t error = move("from", "to", moveReplaceExisting);
        EXPECT_TRUE(error == errorSharingViolation || error == errorAccessDenied) << error;
    }
    EXPECT_EQ(folder.read("to"), "content of to");
    EXPECT_EQ(move("from", "to", moveReplaceExisting), errorNone);
    EXPECT_EQ(remove("to"), errorNone);
}

TEST_F(Files, FilesAndFoldersAreToldApart) {
    EXPECT_EQ(makeSub("sub"), errorNone);
    EXPECT_EQ(makeSub("sub"), errorAlreadyExists);
    EXPECT_EQ(makeSub("absent\\sub"), errorPathNotFound);
    const std::string file = folder.write("sub/file", "text");
    EXPECT_EQ(list("sub"), (std::vector<std::string>{"..\\", ".\\", "file"}));
    EXPECT_EQ(listFolder(folder.path("absent")), std::nullopt);
    EXPECT_EQ(fileSize(file), 4U);
    EXPECT_EQ(fileSize(folder.path("sub")), std::nullopt);
    EXPECT_EQ(fileSize(folder.path("absent")), std::nullopt);
    EXPECT_EQ(openFile(folder.path("sub"), "rb"), nullptr);
    EXPECT_EQ(move("sub\\file", "absent\\to"), errorPathNotFound);
    EXPECT_EQ(remove("sub"), errorAccessDenied);
    EXPECT_EQ(remove("absent\\file"), errorPathNotFound);
    EXPECT_EQ(remove("sub\\file"), errorNone);
    EXPECT_EQ(remove("sub\\file"), errorFileNotFound);
}

TEST_F(Files, APathOf260CharactersIsRefused) {
    const std::string longest = folder.path(std::string(maxPath - 2 - folder.path().size(), 'a'));
    EXPECT_TRUE(creates(longest));
    EXPECT_TRUE(fileExists(longest));
    const std::string tooLong = longest + 'a';
    const std::function<bool()> calls[] = {
        [&] { return creates(tooLong); },
        [&] { return fileExists(tooLong); },
        [&] { return isFolder(tooLong); },
        [&] { return canAccess(tooLong); },
        [&] { return makeFolder(tooLong); },
        [&] { return removeFile(tooLong); },
        [&] { return fileSize(tooLong).has_value(); },
        [&] { return listFolder(tooLong).has_value(); },
        [&] { return moveFile(longest, tooLong.c_str(), 0); },
        [&] { return moveFile(tooLong, nullptr, moveDelayUntilReboot); },
        [&] { return iterateCabinet(tooLong, {}); },
        [&] { return readFileVersion(tooLong).has_value(); },
        [&] {
            return !systemPath(tooLong).empty();
        }};
    for (const auto& call : calls) {
        setLastError(errorNone);
        EXPECT_FALSE(call()) << &call - calls;
        EXPECT_EQ(lastError(), errorFilenameTooLong) << &call - calls;
    }
    EXPECT_EQ(profileString(tooLong, "a", "b", "c", 2), "c");
}

} // namespace
