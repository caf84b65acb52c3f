#include <cstring>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "host/notificationcenter.h"
#include "sandbox/common/events.h"
#include "sandbox/common/folders.h"
#include "sandbox/common/jsonfile.h"
#include "sandbox/common/worker.h"
#include "sandbox/modules/xnbase/listener.h"
#include "sandbox/platform/filelock.h"
#include "utils/mutex.h"

namespace {

using Bytes = std::vector<unsigned char>;

class Notification final : public NC::INotification {
public:
    Notification(int kind, Bytes bytes) : number(kind), record(std::move(bytes)) {}

    int type() override { return number; }
    const void* data() override { return record.empty() ? nullptr : record.data(); }

private:
    int number;
    Bytes record;
};

std::string toHex(const Bytes& bytes) {
    constexpr const char* digits = "0123456789abcdef";
    std::string text;
    for (const unsigned char byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

/// The number that a record of the package channel begins with.
std::int32_t codeOf(const Bytes& record) {
    std::int32_t code = 0;
    if (record.size() >= sizeof code) {
        std::memcpy(&code, record.data(), sizeof code);
    }
    return code;
}

/// Reports a record whose size is not the one that all readers of its type rely on.
void checkSize(int type, std::uint32_t size) {
    static constexpr std::pair<int, std::uint32_t> sizes[] = {
        {NC::packageType, sizeof(NC::PackageRecord)},
        {NC::kelvarVersionType, sizeof(NC::KelvarVersionRecord)}};
    for (const auto& [known, wanted] : sizes) {
        if (type == known && size != wanted) {
            sandbox::emitFailure("INotificationCenter::post", "type " + std::to_string(type) +
                                                                  " with " + std::to_string(size) +
                                                                  " bytes");
        }
    }
}

class NotificationCenter final : public NC::INotificationCenter {
public:
    void registerObserver(NC::Observer* observer) override {
        if (!observer) {
            sandbox::emitFailure("INotificationCenter::registerObserver", "no observer");
            return;
        }
        MutexLock lock(mutex);
        observers.push_back(observer);
    }

    void reserved1() override {}

    void post(int type, const void* data, std::uint32_t size) override {
        const auto* begin = static_cast<const unsigned char*>(data);
        Bytes record = begin ? Bytes(begin, begin + size) : Bytes();
        checkSize(type, size);
        sandbox::emit(
            {{"kind", "notification"}, {"type", type}, {"size", size}, {"hex", toHex(record)}});
        deliveries.post([this, type, record = std::move(record)] { deliver(type, record); });
    }

    bool idle() const { return deliveries.idle(); }

private:
    void deliver(int type, const Bytes& record) {
        std::vector<NC::Observer*> receivers;
        {
            MutexLock lock(mutex);
            receivers = observers;
        }
        Notification notification(type, record);
        for (NC::Observer* observer : receivers) {
            sandbox::guarded("onNotification", [&] { observer->onNotification(&notification); });
        }
        // Whoever sent a command learns when it has been carried out.
        sandbox::emit({{"kind", "delivered"}, {"type", type}, {"code", codeOf(record)}});
    }

    Mutex mutex;
    std::vector<NC::Observer*> observers XR_GUARDED_BY(mutex);
    sandbox::Worker deliveries{"notification delivery"};
};

NotificationCenter& center() {
    static NotificationCenter& instance = *new NotificationCenter;
    return instance;
}

/// What the user interface has sent since the last call. It counts as taken once it is read and
/// its file is gone.
std::string takeCommands(const std::filesystem::path& file) {
    std::error_code error;
    if (!std::filesystem::exists(file, error)) {
        return "";
    }
    const sandbox::FileLock lock(sandbox::lockOf(file));
    const auto lines = sandbox::readFile(file);
    return lock.isHeld() && lines && std::filesystem::remove(file, error) ? *lines : "";
}

void postCommand(const std::string& line) {
    NC::PackageRecord record;
    const nlohmann::json code = nlohmann::json::parse(line).at("code");
    if (!code.is_number_integer() || !std::in_range<std::int32_t>(code.get<std::int64_t>())) {
        throw std::runtime_error("no code of a command: " + line);
    }
    record.code = code.get<std::int32_t>();
    center().post(NC::packageType, &record, sizeof record);
}

} // namespace

extern "C" NC::INotificationCenter* GetNotificationCenter() {
    return &center();
}

extern "C" bool sandboxIdle() {
    return center().idle();
}

extern "C" void sandboxPoll() {
    std::istringstream lines(takeCommands(sandbox::processFolders().commands()));
    for (std::string line; std::getline(lines, line);) {
        sandbox::guarded("commands.jsonl", [&] { postCommand(line); });
    }
}

static_assert(std::is_same_v<decltype(&sandboxIdle), sandbox::Idle>);
static_assert(std::is_same_v<decltype(&sandboxPoll), sandbox::Poll>);
