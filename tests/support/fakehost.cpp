#include "support/fakehost.h"

#include <algorithm>
#include <fstream>
#include <random>
#include <stdexcept>

#include "support/fakemodules.h"

namespace {

FakeHost* theHost = nullptr;

std::filesystem::path makeFolder() {
    std::random_device random;
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() /
        ("xrefresher-test-" + std::to_string(random()) + std::to_string(random()));
    std::filesystem::create_directories(folder);
    return folder;
}

std::size_t countLines(const std::vector<FakeHost::LogLine>& lines, const std::string& text) {
    return static_cast<std::size_t>(
        std::count_if(lines.begin(), lines.end(), [&](const FakeHost::LogLine& line) {
            return line.text.find(text) != std::string::npos;
        }));
}

} // namespace

FakeHost::FakeHost() : folder(makeFolder()) {
    theHost = this;
    fake::reset();
    fake::setExecutable(clientPath("trayhost.exe"));
    fake::setTick(1'000'000);
    fakemodules::install();
}

FakeHost::~FakeHost() {
    for (std::thread& delivery : deliveries) {
        delivery.join();
    }
    fake::reset();
    theHost = nullptr;
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

FakeHost& FakeHost::current() {
    if (!theHost) {
        throw std::logic_error("no FakeHost stands");
    }
    return *theHost;
}

std::string FakeHost::clientFolder() const {
    std::string path = folder.string();
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

std::filesystem::path FakeHost::diskPath(const std::string& relative) const {
    std::string path = relative;
    std::replace(path.begin(), path.end(), '\\', '/');
    return folder / path;
}

void FakeHost::has(const std::string& relative, const std::string& bytes) const {
    const std::filesystem::path path = diskPath(relative);
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
}

bool FakeHost::exists(const std::string& relative) const {
    return std::filesystem::exists(diskPath(relative));
}

std::string FakeHost::bytesOf(const std::string& relative) const {
    std::ifstream file(diskPath(relative), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<FakeHost::LogLine> FakeHost::log() const {
    const std::lock_guard guard(mutex);
    return lines;
}

void FakeHost::addLog(LogLine line) {
    const std::lock_guard guard(mutex);
    lines.push_back(std::move(line));
    changed.notify_all();
}

std::size_t FakeHost::count(const std::string& text) const {
    const std::lock_guard guard(mutex);
    return countLines(lines, text);
}

FakeHost::LogLine FakeHost::lineWith(const std::string& text) const {
    for (const LogLine& line : log()) {
        if (line.text.find(text) != std::string::npos) {
            return line;
        }
    }
    return {};
}

void FakeHost::awaitLog(const std::string& text, std::size_t times) const {
    std::unique_lock lock(mutex);
    changed.wait(lock, [&] { return countLines(lines, text) >= times; });
}

void FakeHost::deliver(std::function<void()> call) {
    if (!onThread) {
        call();
        return;
    }
    const std::lock_guard guard(mutex);
    deliveries.emplace_back(std::move(call));
}
