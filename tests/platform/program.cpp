// Another process for the tests: it ends as its argument says, or stays until it is ended.
#include "platform/clock.h"
#include "platform/process.h"
#include "sandbox/platform/messagebox.h"

#include <cstdint>
#include <limits>
#include <string>

int main(int count, char** arguments) {
    const std::string what = count > 1 ? arguments[1] : "";
    if (what == "message") {
        sandbox::answerMessageBoxes();
        platform::endProcess("T\xC3\xA4tle", "One line.\n\nLibrary : x.dll\n\n", -1);
    }
    if (what == "abort") {
        platform::abortProcess();
    }
    platform::sleepFor(std::numeric_limits<std::uint32_t>::max());
    return 0;
}
