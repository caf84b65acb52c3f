#include "platform/clock.h"
#include "utils/utils.h"

namespace utils {

std::int64_t elapsedSince(std::uint64_t tick) {
    // Without sign: a number that was stored may be anything.
    return static_cast<std::int64_t>(std::uint64_t{platform::tickCount()} - tick);
}

} // namespace utils
