#include "sandbox/platform/heap.h"

#include <malloc.h>

namespace sandbox {

std::uint64_t allocatedBytes() {
    const auto heap = ::mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

} // namespace sandbox
