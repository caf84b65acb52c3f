#include "hostile/mutation.h"

#include <algorithm>
#include <array>

namespace hostile {

namespace {

using materials::Bytes;

/// Where readers of numbers go wrong.
constexpr std::array<std::uint64_t, 14> edges{0,          1,          2,          4,         16,
                                              0x7F,       0xFF,       0x7FFF,     0x8000,    0xFFFF,
                                              0x7FFFFFFF, 0x80000000, 0x80000018, 0xFFFFFFFF};

/// A part of the bytes over another one.
void copyWithin(Bytes& bytes, std::size_t from, std::size_t to, std::size_t size) {
    size = std::min(size, bytes.size() - std::max(from, to));
    const Bytes part(bytes.begin() + static_cast<long>(from),
                     bytes.begin() + static_cast<long>(from + size));
    std::copy(part.begin(), part.end(), bytes.begin() + static_cast<long>(to));
}

} // namespace

void Mutation::change(Bytes& bytes, std::size_t reach) {
    reach = std::min(reach, bytes.size());
    if (reach == 0) {
        return;
    }
    const std::size_t at = below(reach);
    switch (below(8)) {
    case 0:
        bytes[at] ^= static_cast<std::uint8_t>(1U << below(8));
        return;
    case 1:
        bytes[at] = static_cast<std::uint8_t>(below(256));
        return;
    case 2:
    case 3:
        putField(bytes, at & ~std::size_t{1}, 2);
        return;
    case 4:
    case 5:
        putField(bytes, at & ~std::size_t{3}, 4);
        return;
    case 6:
        copyWithin(bytes, at, below(reach), 1 + below(64));
        return;
    default:
        // An end that is missing hides the other changes behind it: seldom.
        bytes.resize(below(4) == 0 ? at : bytes.size());
    }
}

void Mutation::putField(Bytes& bytes, std::size_t at, std::size_t size) {
    const std::array<std::uint64_t, 3> own{bytes.size(), at, below(bytes.size())};
    const std::size_t which = below(edges.size() + own.size());
    const std::uint64_t value =
        which < edges.size() ? edges.at(which) : own.at(which - edges.size());
    for (std::size_t i = 0; i < size && at + i < bytes.size(); ++i) {
        bytes[at + i] = static_cast<std::uint8_t>(value >> 8 * i);
    }
}

} // namespace hostile
