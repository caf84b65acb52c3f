#include "sandbox/platform/heap.h"

#include <windows.h>

#include <vector>

namespace sandbox {
namespace {

std::uint64_t busyBytes(HANDLE heap) {
    if (!HeapLock(heap)) {
        return 0; // of a library that has made it without a lock of its own
    }
    std::uint64_t bytes = 0;
    PROCESS_HEAP_ENTRY entry{};
    while (HeapWalk(heap, &entry)) {
        const bool isBusy = (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0;
        bytes += isBusy ? entry.cbData + entry.cbOverhead : 0U;
    }
    HeapUnlock(heap);
    return bytes;
}

} // namespace

std::uint64_t allocatedBytes() {
    std::vector<HANDLE> heaps(GetProcessHeaps(0, nullptr));
    const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
    if (count > heaps.size()) {
        return 0; // another thread has just made one
    }
    std::uint64_t bytes = 0;
    for (DWORD i = 0; i < count; ++i) {
        bytes += busyBytes(heaps[i]);
    }
    return bytes;
}

} // namespace sandbox
