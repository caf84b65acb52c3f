#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
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

/// What one of these costs on the client's system.
struct Cost {
    double threadKilobytes; ///< with its chain
    double threadHandles;

    double kilobytes(const Kept& kept) const { return threadKilobytes * kept.threads(); }
    double handles(const Kept& kept) const { return threadHandles * kept.threads(); }
};
inline constexpr Cost nativeCost{24, 0};
inline constexpr Cost wineCost{1000, 4}; ///< its stack, and what waits are made of

class Tally {
public:
    /// Takes an observation of the host.
    void see(const nlohmann::json& event);

    /// What is kept at that time, which is told as the "t" of events.
    Kept kept(std::int64_t now);

    /// How often lines that begin with the text came.
    std::size_t lines(const std::string& begin) const;

    const std::string& packetVersion() const { return stored; } ///< that the client has stored

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
};

} // namespace soak
