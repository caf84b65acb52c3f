#pragma once

#include <cstdint>
#include <vector>

#include "sandbox/materials/content.h"

/// Images (PE) that are not as they should be. Plain functions; any thread.
namespace hostile {

/// A sound image of version 2.0.0.0, of two kilobytes or so; `seed` tells them apart.
materials::Bytes soundImage(std::uint64_t seed);

/// The sound image with one to four changes that follow from the seed: bits, bytes and fields
/// with numbers at the edges, parts copied over others, an end that is missing. Nearly all lie in
/// the headers and in the resources.
materials::Bytes brokenImage(std::uint64_t seed);

/// The sound image with a version resource in that many languages (up to 4,000), all of them the
/// same bytes, of that size and more.
materials::Bytes imageOfLanguages(std::uint16_t count, std::size_t resourceSize);

} // namespace hostile
