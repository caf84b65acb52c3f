#include "sandbox/common/events.h"

#include <chrono>

#include "sandbox/common/folders.h"
#include "sandbox/platform/filewrites.h"

namespace sandbox {

std::int64_t monotonicMilliseconds() {
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count();
}

std::int64_t wallMilliseconds() {
    const auto since1970 = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(since1970).count();
}

void appendEvent(const std::filesystem::path& file, nlohmann::json event) {
    event["t"] = monotonicMilliseconds();
    event["at"] = wallMilliseconds();
    appendToFile(file, event.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + '\n');
}

void emit(nlohmann::json event) {
    appendEvent(processFolders().events(), std::move(event));
}

void emitFailure(const std::string& where, const std::string& text) {
    emit({{"kind", "failure"}, {"where", where}, {"text", text}});
}

} // namespace sandbox
