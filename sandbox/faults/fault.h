#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "sandbox/faults/faultkind.h"

namespace sandbox {

/// The one fault of a request that the client's side carries out.
inline constexpr const char* dropFault = "drop";

/// One fault that a step of a scenario names.
struct Fault {
    std::string on;
    std::string name;
    std::size_t attempt = 0; ///< the request of that step that meets it, from 1; 0 is each
    nlohmann::json parameters = nlohmann::json::object(); ///< told ones and defaults

    const FaultKind& kind() const { return *findFaultKind(name); }
    bool has(const char* parameter) const { return parameters.contains(parameter); }
    std::int64_t number(const char* parameter) const { return parameters.at(parameter); }
    std::string text(const char* parameter) const { return parameters.at(parameter); }
    bool flag(const char* parameter) const { return parameters.at(parameter); }

    /// What it does, with its numbers.
    std::string words() const;
    /// Which one it is, to people: "status on GetPacketMeta, attempt 2".
    std::string title() const;
    /// What the log of faults has of it, beside when and where in the run it took effect.
    nlohmann::json record() const;
};

/// The faults of a step; `files` are the materials' names. Throws std::runtime_error that names
/// what is wrong, and for an unknown name all that are known. A fault that an earlier one of the
/// list leaves no request for is wrong too.
std::vector<Fault> readFaults(const nlohmann::json& list, const std::set<std::string>& files);

/// The inverse, for those who read them from a file of the run.
nlohmann::json toJson(const std::vector<Fault>& faults);

} // namespace sandbox
