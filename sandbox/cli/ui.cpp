#include "sandbox/cli/ui.h"

#include <array>
#include <stdexcept>
#include <thread>

#include "sandbox/cli/eventtail.h"
#include "sandbox/cli/uicommands.h"
#include "sandbox/cli/uiscript.h"
#include "sandbox/cli/uiview.h"
#include "sandbox/cli/upgraderecord.h"
#include "sandbox/platform/filelock.h"
#include "sandbox/platform/keyboard.h"
#include "sandbox/platform/stopsignal.h"

namespace sandbox {
namespace {

using Clock = std::chrono::steady_clock;
constexpr auto keyPause = std::chrono::milliseconds(20);
constexpr auto arrivalLimit = std::chrono::seconds(60); // a busy machine's, and no answer

struct Key {
    char key;
    const char* command;
};

constexpr std::array<Key, 5> keys{
    {{'c', "check"}, {'d', "download"}, {'x', "cancel"}, {'i', "install"}, {'g', "ignore"}}};
constexpr char quitKey = 'q';

std::string keysText() {
    std::string text;
    for (const Key& key : keys) {
        text += std::string(1, key.key) + " " + key.command + "   ";
    }
    return text + quitKey + " quit";
}

void press(const Folders& folders, char pressed) {
    for (const Key& key : keys) {
        if (key.key == pressed) {
            sendCommand(folders, *commandOf(key.command));
        }
    }
}

bool isHosted(const Folders& folders) {
    return FileLock::isTaken(folders.hostLock());
}

void show(const nlohmann::json& event, UiView& view) {
    if (const auto note = packageNote(event)) {
        view.note(*note);
    }
}

} // namespace

void awaitHost(const Folders& folders, Console& console, std::chrono::seconds limit) {
    const auto end = Clock::now() + limit;
    if (!isHosted(folders)) {
        console.line("waiting for a host in " + folders.root().string() +
                     "; \"xsandbox host SCENARIO\" starts one");
    }
    while (!isHosted(folders)) {
        if (stopSignalled() || Clock::now() > end) {
            throw std::runtime_error("no host runs in " + folders.root().string());
        }
        std::this_thread::sleep_for(keyPause);
    }
}

std::vector<WordDone> doWords(const Folders& folders, const std::vector<std::string>& words,
                              Console& console, std::chrono::seconds limit) {
    UiScript script(folders, words);
    UiView view(folders, console);
    EventTail tail(folders.events());
    tail.skip();
    std::vector<WordDone> done;
    while ((done.empty() || done.back().fault.empty()) && script.begin()) {
        const auto follow = [&](auto isDone, std::chrono::seconds time) {
            const auto end = Clock::now() + time;
            while (!isDone() && Clock::now() < end && isHosted(folders)) {
                std::this_thread::sleep_for(keyPause);
                for (const nlohmann::json& event : tail.next()) {
                    show(event, view);
                    script.see(event);
                }
            }
        };
        follow([&] { return script.hasArrived(); }, arrivalLimit);
        follow([&] { return script.isAnswered() || !script.hasArrived(); }, limit);
        std::string fault = script.fault();
        if (!fault.empty()) {
            fault += isHosted(folders) ? "" : "; the host has ended";
            console.row(Mark::fault, {fault}, {});
        }
        done.push_back({words[done.size()], fault});
    }
    return done;
}

void runUi(const Folders& folders, Console& console) {
    Keyboard keyboard;
    if (!keyboard.isThere()) {
        throw std::runtime_error("there are no keys without a terminal; use --do");
    }
    UiView view(folders, console);
    EventTail tail(folders.events());
    tail.skip();
    console.heading("Updates of the client");
    console.line(keysText());
    view.offer(storedRecord(folders));
    while (!stopSignalled()) {
        for (const nlohmann::json& event : tail.next()) {
            show(event, view);
        }
        const char key = keyboard.next(keyPause).value_or('\0');
        if (key == quitKey || key == Keyboard::endOfKeys) {
            return;
        }
        press(folders, key);
        if (!isHosted(folders)) {
            console.row(Mark::no, {"the host has ended"}, {});
            return;
        }
    }
}

} // namespace sandbox
