#include "sandbox/faults/faultlog.h"

#include <algorithm>
#include <sstream>

#include "sandbox/common/events.h"
#include "sandbox/platform/filewrites.h"

namespace sandbox {
namespace {

bool hasAll(const nlohmann::json& line, const nlohmann::json& members) {
    nlohmann::json both = line;
    both.update(members);
    return both == line;
}

} // namespace

void logFault(const std::filesystem::path& file, std::size_t phase, const Fault& fault,
              std::size_t attempt) {
    nlohmann::json line = fault.record();
    line["phase"] = phase;
    line["attempt"] = attempt;
    line["at"] = wallMilliseconds();
    appendToFile(file, line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + '\n');
}

bool hasTakenEffect(const std::vector<nlohmann::json>& lines, std::size_t phase,
                    const Fault& fault) {
    const nlohmann::json record = fault.record();
    return std::any_of(lines.begin(), lines.end(), [&](const nlohmann::json& line) {
        return hasAll(line, record) && line.value("phase", std::size_t{0}) == phase &&
               (fault.attempt == 0 || line.value("attempt", std::size_t{0}) == fault.attempt);
    });
}

std::vector<nlohmann::json> readFaultLog(const std::filesystem::path& file) {
    std::vector<nlohmann::json> lines;
    std::istringstream text(readFile(file).value_or(""));
    for (std::string line; std::getline(text, line);) {
        auto json = nlohmann::json::parse(line, nullptr, false);
        if (json.is_object()) {
            lines.push_back(std::move(json));
        }
    }
    return lines;
}

} // namespace sandbox
