#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace sandbox {

/// Follows events.jsonl while others append to it. One thread.
class EventTail {
public:
    explicit EventTail(std::filesystem::path eventsFile) : file(std::move(eventsFile)) {}

    /// Passes over what is there.
    void skip();

    /// The events of all lines that were completed since the last call. A line that is
    /// no JSON becomes a failure event.
    std::vector<nlohmann::json> next();

private:
    std::filesystem::path file;
    std::uint64_t offset = 0;
    std::string rest; ///< the line that is not complete yet
};

} // namespace sandbox
