#include "sandbox/platform/messagebox.h"

#include <array>
#include <iostream>
#include <string>
#include <thread>
#include <windows.h>

#include "platform/text.h"

namespace sandbox {

namespace {

constexpr DWORD glance = 50;        // milliseconds
constexpr UINT answerLimit = 5000;  // milliseconds
constexpr int messageText = 0xFFFF; // the system's number of the text in a message box
constexpr const wchar_t* dialogClass = L"#32770";

bool isOwnDialog(HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    std::array<wchar_t, 16> name{};
    GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    return process == GetCurrentProcessId() && name.data() == std::wstring(dialogClass) &&
           IsWindowVisible(window) != 0; // one that is answered is hidden before it goes
}

BOOL CALLBACK answer(HWND window, LPARAM /*unused*/) {
    if (isOwnDialog(window)) {
        std::array<wchar_t, 256> title{};
        std::array<wchar_t, 2048> text{};
        GetWindowTextW(window, title.data(), static_cast<int>(title.size()));
        GetDlgItemTextW(window, messageText, text.data(), static_cast<int>(text.size()));
        std::cerr << "message box \"" + platform::toUtf8(title.data()) +
                         "\": " + platform::toUtf8(text.data()) + "\n";
        SendMessageTimeoutW(window, WM_COMMAND, IDOK, 0, SMTO_ABORTIFHUNG, answerLimit, nullptr);
    }
    return TRUE;
}

} // namespace

void answerMessageBoxes() {
    std::thread([] {
        for (;; Sleep(glance)) {
            EnumWindows(answer, 0);
        }
    }).detach();
}

} // namespace sandbox
