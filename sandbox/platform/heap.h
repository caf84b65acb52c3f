#pragma once

#include <cstdint>

/// The memory that the process asks its allocator for. Any thread.
namespace sandbox {

/// Bytes that were allocated and not freed, with what the allocator adds to each block. On Linux a
/// thread's cache counts as allocated, unless the process runs without such caches. 0 when the
/// system does not tell. Looks at each free block, on Windows at each block: some milliseconds.
std::uint64_t allocatedBytes();

} // namespace sandbox
