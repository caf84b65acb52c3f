#include <chrono>
#include <iostream>
#include <memory>
#include <thread>
#include <vector>

#include "sandbox/platform/heldfile.h"
#include "sandbox/platform/hostprocess.h"
#include "sandbox/platform/stopsignal.h"

/// holdfile FILE...: keeps its own image and the files in use until it is asked to end,
/// as a running program of the client does. Says "ready" once it holds them all; status 1
/// when one cannot be held.
int main(int count, char** arguments) {
    sandbox::watchStopSignals();
    std::vector<std::unique_ptr<sandbox::HeldFile>> held;
    held.push_back(std::make_unique<sandbox::HeldFile>(sandbox::executableFile()));
    for (const std::string& file : sandbox::ownArguments(count, arguments)) {
        const std::u8string path(file.begin(), file.end());
        held.push_back(std::make_unique<sandbox::HeldFile>(path));
        if (!held.back()->isHeld()) {
            std::cerr << "cannot hold " << file << "\n";
            return 1;
        }
    }
    std::cout << "ready" << std::endl;
    while (!sandbox::stopSignalled()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return 0;
}
