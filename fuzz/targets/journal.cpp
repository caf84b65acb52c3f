#include "fuzz/fuzz.h"
#include "platform/posix/journalline.h"

// A line of the journal of delayed moves. Input: a source, and a target in the lines behind; and
// all of it as a line.

namespace {

using platform::posix::DelayedMove;

void readsBack(const DelayedMove& request) {
    std::string line = platform::posix::formatLine(request);
    fuzz::require(line.find('\n') == line.size() - 1, "a request is one line", line);
    line.pop_back();
    fuzz::require(platform::posix::parseLine(line) == request, "a request reads back the same",
                  line);
}

} // namespace

FUZZ_TARGET(journal) {
    std::string to = input;
    const std::string from = fuzz::takeLine(to);
    if (!from.empty()) {
        readsBack({from, std::nullopt, false});
    }
    if (!from.empty() && !to.empty()) {
        readsBack({from, to, false});
        readsBack({from, to, true});
    }
    if (const std::optional<DelayedMove> request = platform::posix::parseLine(input)) {
        readsBack(*request);
    }
}
