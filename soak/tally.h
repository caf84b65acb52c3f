#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

/// What the plug-in has done, counted from what the host's modules observe. One thread.
namespace soak {

/// Threads and chains that stay by design.
struct Kept {
    std::size_t chains = 0;  ///< that never end, each with its thread
    std::size_t retries = 0; ///< threads that wait for the file channel's next attempt

    double threads() const { return static_cast<double>(chains + retries); }
};

/// What the host has allocated at one of its ticks.
struct HeapLook {
    double tick = 0;
    double bytes = 0;
};

/// What turns of the programme are there for, as `done` names it.
inline constexpr const char* installsInMuteMode =
    "package: installs in mute mode, each a chain that stays";
inline constexpr const char* cancelsOfTheUser = "package: the user's cancels";
inline constexpr const char* setupsThatFailed = "package: installs whose setup fails";

class Tally {
public:
    /// Takes an observation of the host.
    void see(const nlohmann::json& event);

    /// What is kept at that time, which is told as the "t" of events. `spoiled` is how many
    /// answers to package checks were lost or made no JSON: no other check may stay open.
    Kept kept(std::int64_t now, std::size_t spoiled);

    /// The last one that the host has told; 0 bytes are what its system does not tell.
    const std::optional<HeapLook>& heap() const { return looked; }

    /// How often lines that begin with the text came.
    std::size_t lines(const std::string& begin) const;

    const std::string& packetVersion() const { return stored; } ///< that the client has stored

    std::size_t packetsDone() const;
    std::size_t installs() const; ///< whatever came of their setups

    /// "channel: what" and how often, in the order of the channels.
    std::vector<std::pair<std::string, std::size_t>> done() const;
    /// What modules have caught, and how often.
    const std::map<std::string, std::size_t>& failures() const { return caught; }

private:
    void seeLine(const std::string& text, std::int64_t time);

    std::map<std::string, std::size_t> counts; ///< by the begin of the line, or by the kind
    std::map<std::string, std::size_t> caught;
    std::deque<std::int64_t> retries; ///< when each began
    std::string stored;
    std::optional<HeapLook> looked;
};

} // namespace soak
