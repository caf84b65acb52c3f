// What holds on this system only: programs that run, the registry's list of delayed moves,
// names in the code page, message boxes.
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/fileversion.h"
#include "platform/lasterror.h"
#include "platform/paths.h"
#include "platform/process.h"
#include "platform/text.h"
#include "sandbox/platform/childprocess.h"
#include "sandbox/platform/delayed.h"
#include "temporaryfolder.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace {

using namespace platform;
using sandbox::ChildProcess;

const std::string program = removeFileSpec(executablePath()) + "\\platform_test_program.exe";

class Win32 : public testing::Test {
protected:
    static std::uint32_t errorOf(bool worked) { return worked ? errorNone : lastError(); }
    std::uint32_t move(const std::string& from, const std::string& to) const {
        return errorOf(moveFile(folder.path(from), folder.path(to).c_str(), moveReplaceExisting));
    }
    std::uint32_t remove(const std::string& name) const {
        return errorOf(removeFile(folder.path(name)));
    }
    std::uint32_t open(const std::string& name, const char* mode) const {
        std::FILE* file = openFile(folder.path(name), mode);
        const std::uint32_t error = errorOf(file != nullptr);
        return file && std::fclose(file) != 0 ? lastError() : error;
    }
    static ChildProcess start(const std::filesystem::path& file, const char* what,
                              const std::filesystem::path& output = {}) {
        return ChildProcess::start(file, {what}, file.parent_path(), output).value();
    }

    TemporaryFolder folder;
};

TEST_F(Win32, ARunningProgramCanOnlyBeMovedAside) {
    std::filesystem::copy_file(program, folder.onDisk("old.exe"));
    folder.write("new.exe", "new");
    ChildProcess running = start(folder.onDisk("old.exe"), "stay");
    EXPECT_EQ(open("old.exe", "rb"), errorNone);
    EXPECT_EQ(open("old.exe", "r+b"), errorSharingViolation);
    EXPECT_EQ(readFileVersion(folder.path("old.exe")), (FileVersion{7, 65535, 0, 12}));
    EXPECT_EQ(remove("old.exe"), errorAccessDenied);
    EXPECT_EQ(move("new.exe", "old.exe"), errorAccessDenied);
    EXPECT_EQ(move("old.exe", "aside.exe"), errorNone);
    EXPECT_EQ(move("new.exe", "old.exe"), errorNone);
    EXPECT_EQ(remove("aside.exe"), errorAccessDenied);
    EXPECT_EQ(folder.read("old.exe"), "new");
    running.kill();
    running.wait();
    EXPECT_EQ(remove("aside.exe"), errorNone);
}

TEST_F(Win32, DelayedMovesAreInTheRegistry) {
    const std::string from = folder.write("from", "text");
    const std::string to = folder.write("to", "text");
    EXPECT_TRUE(moveFile(from, to.c_str(), moveReplaceExisting | moveDelayUntilReboot));
    EXPECT_TRUE(moveFile(folder.path("\\from"), nullptr, moveDelayUntilReboot));
    const auto [moves, faults] = sandbox::pendingList(folder.path());
    ASSERT_EQ(moves.size(), 2U);
    EXPECT_EQ(std::pair(moves[0].from, moves[0].to), std::pair(from, to));
    EXPECT_EQ(std::pair(moves[1].from, moves[1].to), std::pair(from, std::string()));
    EXPECT_TRUE(faults.empty());
    EXPECT_EQ(folder.entryCount(), 2U);
}

/// The registry as this process sees it gets a list of another type, and nobody else does.
TEST_F(Win32, AListThatIsNoneIsAFault) {
    const std::wstring place = L"Software\\delayed-" + std::to_wstring(::GetCurrentProcessId());
    const std::wstring key = place + L"\\SYSTEM\\CurrentControlSet\\Control\\Session Manager";
    HKEY machine = nullptr;
    ASSERT_EQ(::RegCreateKeyW(HKEY_CURRENT_USER, place.c_str(), &machine), ERROR_SUCCESS);
    EXPECT_EQ(::RegOverridePredefKey(HKEY_LOCAL_MACHINE, machine), ERROR_SUCCESS);
    EXPECT_TRUE(sandbox::pendingList(folder.path()).faults.empty());
    ::RegSetKeyValueW(HKEY_CURRENT_USER, key.c_str(), L"PendingFileRenameOperations", REG_SZ, L"",
                      sizeof(wchar_t));
    EXPECT_EQ(sandbox::pendingList(folder.path()).faults,
              std::vector<std::string>{"the list cannot be read, error 1630"});
    ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    ::RegCloseKey(machine);
    ::RegDeleteTreeW(HKEY_CURRENT_USER, place.c_str());
}

std::wstring fromCodePage(const std::string& text) {
    std::wstring wide(text.size(), L'\0');
    const int size = static_cast<int>(text.size());
    wide.resize(static_cast<std::size_t>(
        ::MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), size)));
    return wide;
}

TEST_F(Win32, NamesReachAsFarAsTheCodePage) {
    for (const std::wstring name : {L"plain", L"\u00E4\u00DF", L"\u0416", L"\u4E2D\u6587"}) {
        SCOPED_TRACE(testing::PrintToString(name));
        const std::filesystem::path file = folder.onDisk("") / name;
        std::ofstream(file) << "text";
        const std::string listed = listFolder(folder.path()).value().back().name;
        const bool isSpelled = fromCodePage(listed) == name;
        EXPECT_TRUE(isSpelled || name != L"plain");
        EXPECT_EQ(fileExists(folder.path(listed)), isSpelled);
        EXPECT_EQ(move(listed, "moved") == errorNone, isSpelled);
        EXPECT_EQ(std::filesystem::exists(file), !isSpelled);
        EXPECT_EQ(remove(isSpelled ? "moved" : listed) == errorNone, isSpelled);
        std::filesystem::remove(file);
    }
}

TEST_F(Win32, TheProcessEndsWhenItsMessageIsAnswered) {
    // Not in the temporary folder: what Wine starts for a first window keeps it open.
    const std::filesystem::path told = removeFileSpec(program) + "\\message.txt";
    EXPECT_EQ(start(program, "message", told).wait(), -1);
    std::ifstream file(told);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}),
              "message box \"T\xC3\xA4tle\": One line.\n\nLibrary : x.dll\n\n\n")
        << "Wine makes a window only with a graphics driver";
}

TEST_F(Win32, TheProcessEndsAtOnce) {
    constexpr auto invalidParameter = static_cast<int>(0xC0000417);
    EXPECT_EQ(start(program, "abort").wait(), invalidParameter);
}

TEST_F(Win32, TicksAreTheSystems) {
    const auto before = static_cast<std::uint32_t>(::GetTickCount64());
    const std::uint32_t ticks = tickCount();
    const auto after = static_cast<std::uint32_t>(::GetTickCount64());
    EXPECT_LE(ticks - before, after - before);
}

} // namespace
