#pragma once

#include <cstdint>
#include <random>

#include "sandbox/materials/content.h"

namespace hostile {

/// Changes bytes as a file's own maker or a bad line would: the same changes for the same seed on
/// every system. One thread.
class Mutation {
public:
    explicit Mutation(std::uint64_t seed) : numbers(seed) {}

    /// A change within the first `reach` bytes; none to what is empty.
    void change(materials::Bytes& bytes, std::size_t reach);

    /// A number below `end`, which is not 0.
    std::size_t below(std::size_t end) { return numbers() % end; }

private:
    void putField(materials::Bytes& bytes, std::size_t at, std::size_t size);

    std::mt19937_64 numbers;
};

} // namespace hostile
