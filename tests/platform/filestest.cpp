#include "platform/files.h"

#include "platform/lasterror.h"
#include "sandbox/platform/heldfile.h"
#include "temporaryfolder.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using sandbox::HeldFile;

enum class There { nothing, file, folder };

class Files : public testing::Test {
protected:
    void make(const std::string& name, There what) const {
        std::filesystem::remove_all(folder.onDisk(name));
        if (what == There::file) {
            folder.write(name, "content of " + name);
        } else if (what == There::folder) {
            std::filesystem::create_directory(folder.onDisk(name));
        }
    }

    bool move(const std::string& from, const std::string& to, std::uint32_t flags) const {
        setLastError(errorNone);
        return moveFile(folder.path(from), folder.path(to).c_str(), flags);
    }

    TemporaryFolder folder;
};

TEST_F(Files, MoveAnswersByWhatIsThere) {
    constexpr std::uint32_t plain = 0;
    constexpr std::uint32_t replace = moveReplaceExisting;
    const struct {
        There from;
        There to;
        std::uint32_t flags;
        std::uint32_t error;
    } rows[] = {
        {There::nothing, There::nothing, plain, errorFileNotFound},
        {There::nothing, There::file, replace, errorFileNotFound},
        {There::file, There::nothing, plain, errorNone},
        {There::file, There::nothing, replace, errorNone},
        {There::file, There::file, plain, errorAlreadyExists},
        {There::file, There::file, replace, errorNone},
        {There::file, There::folder, plain, errorAlreadyExists},
        {There::file, There::folder, replace, errorAccessDenied},
        {There::folder, There::nothing, plain, errorNone},
        {There::folder, There::file, plain, errorAlreadyExists},
        {There::folder, There::file, replace, errorAccessDenied},
        {There::folder, There::folder, replace, errorAccessDenied},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        make("from", row.from);
        make("to", row.to);
        EXPECT_EQ(move("from", "to", row.flags), row.error == errorNone);
        EXPECT_EQ(lastError(), row.error);
        const bool isMoved = row.error == errorNone;
        EXPECT_EQ(fileExists(folder.path("from")), row.from != There::nothing && !isMoved);
        if (isMoved && row.from == There::file) {
            EXPECT_EQ(folder.read("to"), "content of from");
        } else if (!isMoved && row.to == There::file) {
            EXPECT_EQ(folder.read("to"), "content of to");
        }
    }
}

TEST_F(Files, MoveWithinAName) {
    make("from", There::file);
    EXPECT_TRUE(move("from", "from", 0));
    EXPECT_TRUE(move("from", "FROM", moveReplaceExisting));
    EXPECT_EQ(listFolder(folder.path())->size(), 3U);
    EXPECT_EQ(folder.read("FROM"), "content of from");
    EXPECT_FALSE(move("from", "absent\\to", 0));
    EXPECT_EQ(lastError(), errorPathNotFound);
    EXPECT_EQ(folder.read("FROM"), "content of from");
}

TEST_F(Files, AFileInUseStaysWhereItIs) {
    make("from", There::file);
    make("to", There::file);
    {
        const HeldFile held(folder.onDisk("from"));
        ASSERT_TRUE(held.isHeld());
        EXPECT_FALSE(move("from", "new", 0));
        EXPECT_EQ(lastError(), errorSharingViolation);
        EXPECT_FALSE(removeFile(folder.path("from")));
        EXPECT_EQ(lastError(), errorSharingViolation);
    }
    {
        const HeldFile held(folder.onDisk("to"));
        ASSERT_TRUE(held.isHeld());
        EXPECT_FALSE(move("from", "to", moveReplaceExisting));
        EXPECT_TRUE(lastError() == errorSharingViolation || lastError() == errorAccessDenied);
    }
    EXPECT_EQ(folder.read("to"), "content of to");
    EXPECT_TRUE(move("from", "to", moveReplaceExisting));
    EXPECT_TRUE(removeFile(folder.path("to")));
}

TEST_F(Files, Remove) {
    make("file", There::file);
    make("folder", There::folder);
    EXPECT_TRUE(removeFile(folder.path("file")));
    EXPECT_FALSE(removeFile(folder.path("file")));
    EXPECT_EQ(lastError(), errorFileNotFound);
    EXPECT_FALSE(removeFile(folder.path("folder")));
    EXPECT_EQ(lastError(), errorAccessDenied);
    EXPECT_FALSE(removeFile(folder.path("absent\\file")));
    EXPECT_EQ(lastError(), errorPathNotFound);
}

TEST_F(Files, Folders) {
    EXPECT_TRUE(makeFolder(folder.path("sub")));
    EXPECT_FALSE(makeFolder(folder.path("sub")));
    EXPECT_EQ(lastError(), errorAlreadyExists);
    EXPECT_FALSE(makeFolder(folder.path("absent\\sub")));
    EXPECT_EQ(lastError(), errorPathNotFound);
    folder.write("sub/file", "text");
    std::vector<std::string> names;
    const auto entries = listFolder(folder.path("sub"));
    ASSERT_TRUE(entries);
    for (const FolderEntry& entry : *entries) {
        names.push_back(entry.name + (entry.isFolder ? "\\" : ""));
    }
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"..\\", ".\\", "file"}));
    EXPECT_EQ(listFolder(folder.path("absent")), std::nullopt);
    EXPECT_EQ(fileSize(folder.path("sub\\file")), 4U);
    EXPECT_EQ(fileSize(folder.path("sub")), std::nullopt);
    EXPECT_EQ(fileSize(folder.path("absent")), std::nullopt);
    EXPECT_EQ(openFile(folder.path("sub"), "rb"), nullptr);
}

TEST_F(Files, NamesMatchWithoutRegardToCase) {
    make("Sub", There::folder);
    folder.write("Sub/Name.Dll", "text");
    EXPECT_TRUE(fileExists(folder.path("sUB\\nAME.dLL")));
    EXPECT_TRUE(canAccess(folder.path("sub\\name.dll")));
    EXPECT_FALSE(canAccess(folder.path("sub\\name.dl")));
    std::FILE* file = openFile(folder.path("SUB\\NEW.TXT"), "wb");
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(std::fclose(file), 0);
    EXPECT_EQ(listFolder(folder.path("sub"))->size(), 4U);
    EXPECT_TRUE(move("SUB\\NAME.DLL", "sub\\new.txt", moveReplaceExisting));
    EXPECT_EQ(listFolder(folder.path("sub"))->size(), 3U);
}

TEST_F(Files, APathOf260CharactersIsRefused) {
    const std::string longest = folder.path(std::string(maxPath - 2 - folder.path().size(), 'a'));
    std::FILE* file = openFile(longest, "wb");
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(std::fclose(file), 0);
    EXPECT_TRUE(fileExists(longest));
    const std::string tooLong = longest + 'a';
    make("from", There::file);
    setLastError(errorNone);
    EXPECT_EQ(openFile(tooLong, "wb"), nullptr);
    EXPECT_EQ(lastError(), errorFilenameTooLong);
    EXPECT_FALSE(fileExists(tooLong) || canAccess(tooLong) || makeFolder(tooLong));
    EXPECT_FALSE(moveFile(folder.path("from"), tooLong.c_str(), 0));
    EXPECT_EQ(lastError(), errorFilenameTooLong);
    EXPECT_EQ(systemPath(tooLong), "");
}

} // namespace
