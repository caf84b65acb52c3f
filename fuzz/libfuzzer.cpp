#include <cstddef>
#include <cstdint>

#include "fuzz/fuzz.h"

/// The entry that libFuzzer calls; the program has one target.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::targets().front().run({reinterpret_cast<const char*>(data), size});
    return 0;
}
