#pragma once

#include <array>
#include <string>
#include <vector>

#include "hostile/cabinets.h"
#include "hostile/packet.h"

/// A run of the Kelvar channel against hostile materials, on a machine of its own, and the run
/// behind it against sound ones. One at a time in a process; one thread.
namespace hostile {

enum class Outcome { untouched, refused, placed, fault };
inline constexpr std::array outcomeNames{"untouched", "refused", "placed", "FAULT"};

struct Verdict {
    /// Of each pair. Where one of several leaves traces, none counts as untouched.
    std::vector<Outcome> outcomes;
    std::vector<std::string> faults;
};

struct Expected {
    Fate fate = Fate::either;
    Reason reason = Reason::any;
    bool endsAtDownload = false; ///< so that no other file is placed in the first run either
};

/// Runs both, looks at the whole disk around the client, and judges. Only with Surroundings.
Verdict tried(const std::vector<Pair>& pairs, const Expected& expected);

} // namespace hostile
