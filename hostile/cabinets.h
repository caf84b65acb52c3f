#pragma once

#include <string>
#include <vector>

#include "hostile/rawcabinet.h"

/// Cabinets that nobody means well with. Plain functions; any thread.
namespace hostile {

/// The file that each cabinet is to bring, an image newer than what a client has, and the name
/// that it has there.
Bytes wantedFile();
inline constexpr const char* wantedName = "c.dll";

/// What has to become of a cabinet.
enum class Fate {
    untouched, ///< refused, and nothing of it is written
    refused,   ///< members ahead of what is wrong may lie in the update folder
    either,    ///< readers may take it or refuse it
    placed,    ///< what is strange about it does no harm
};

/// What the log says of it.
enum class Reason {
    none, ///< neither of the next two
    badMember,
    tooMuch,
    any, ///< readers differ
};

struct BadCabinet {
    const char* group; ///< for the table
    std::string what;
    Bytes bytes;
    Fate fate = Fate::refused;
    Reason reason = Reason::none;
};

/// All of them but the mutants.
std::vector<BadCabinet> badCabinets();

/// Members whose names lead elsewhere.
std::vector<BadCabinet> badlyNamedCabinets();

/// Cut ends, wrong sums, wrong sizes.
std::vector<BadCabinet> damagedCabinets();

/// Folders and sets that lead back to themselves or nowhere.
std::vector<BadCabinet> knottedCabinets();

/// What fills a disk or takes hours, with the largest that are still taken.
std::vector<BadCabinet> bombs();

/// A sound cabinet with changes that follow from the seed, in the index, the blocks or both.
Bytes brokenCabinet(std::uint64_t seed);

/// Two members, of which the second one is wanted.
RawCabinet soundCabinet();

} // namespace hostile
