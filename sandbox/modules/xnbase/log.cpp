#include <chrono>
#include <ctime>
#include <string>

#include "host/xnbase.h"
#include "sandbox/common/events.h"
#include "sandbox/common/folders.h"
#include "sandbox/modules/xnbase/listener.h"
#include "sandbox/platform/filewrites.h"
#include "sandbox/platform/hostprocess.h"
#include "utils/mutex.h"

namespace {

struct Watch {
    sandbox::LogListener listener = nullptr;
    void* context = nullptr;
};

Mutex watchMutex;
Watch watch XR_GUARDED_BY(watchMutex);

Watch currentWatch() {
    MutexLock lock(watchMutex);
    return watch;
}

std::string timeStamp() {
    using namespace std::chrono;
    const auto now = system_clock::now();
    const std::tm time = sandbox::localTime(system_clock::to_time_t(now));
    const auto ms = duration_cast<milliseconds>(now.time_since_epoch()).count() % 1000;
    char text[64];
    const std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &time);
    const std::string fraction = std::to_string(1000 + ms).substr(1); // three digits
    return std::string(text, length) + '.' + fraction;
}

/// The text with its line ends spelled out, so that a log line stays one line.
std::string onOneLine(const std::string& text) {
    std::string line;
    for (const char c : text) {
        if (c == '\n') {
            line += "\\n";
        } else if (c == '\r') {
            line += "\\r";
        } else {
            line += c;
        }
    }
    return line;
}

} // namespace

extern "C" void writeLog(int level, const char* file, int line, const char* function,
                         const char* text, std::size_t length) {
    const std::string message = text ? std::string(text, length) : std::string();
    const std::string source = file ? file : "";
    const std::string caller = function ? function : "";
    sandbox::appendToFile(sandbox::processFolders().log(),
                          timeStamp() + " [" + std::to_string(level) + "] [" +
                              std::to_string(sandbox::threadNumber()) + "] " + caller + " (" +
                              source + ':' + std::to_string(line) + ") " + onOneLine(message) +
                              '\n');
    sandbox::emit({{"kind", "log"},
                   {"level", level},
                   {"thread", sandbox::threadNumber()},
                   {"file", source},
                   {"line", line},
                   {"function", caller},
                   {"text", message}});
    if (const Watch now = currentWatch(); now.listener) {
        now.listener(caller.c_str(), message.c_str(), now.context);
    }
}

extern "C" void sandboxSetLogListener(sandbox::LogListener listener, void* context) {
    MutexLock lock(watchMutex);
    watch = {listener, context};
}

static_assert(std::is_same_v<decltype(&writeLog), xnbase::writeLog>);
static_assert(std::is_same_v<decltype(&sandboxSetLogListener), sandbox::SetLogListener>);
