#include <algorithm>
#include <iterator>

#include "sandbox/cli/comparison.h"
#include "sandbox/cli/notes.h"
#include "sandbox/common/clientpath.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

constexpr const char* clientModule = "OrvSecurityver.dll";
/// Ticks of the host's clock between two reports, less what may lie between a tick and the
/// line that tells of it.
constexpr std::int64_t reportGap = 14400 - 400;

/// The version as the client reads it: of the file, or else of the version store.
std::string toldVersion(const ClientState& state, const std::string& path) {
    const auto stored = state.versions.find(comparablePath(path));
    return state.versionAt(path).value_or(stored == state.versions.end() ? "" : stored->second);
}

std::string typeOf(const Json& login) {
    return login.value("token", false) ? "1" : "2";
}

/// Types by the log-in that was told last, and by the next one: it holds a moment before it is
/// told. Without a user centre nobody is logged in.
std::vector<std::string> typesAt(const std::vector<Json>& events, std::size_t at) {
    const auto isLogin = [](const Json& event) {
        return isKind(event, "login");
    };
    const auto report = events.begin() + static_cast<std::ptrdiff_t>(at);
    const auto last = std::find_if(std::make_reverse_iterator(report), events.rend(), isLogin);
    const auto next = std::find_if(report, events.end(), isLogin);
    std::vector<std::string> types{last == events.rend() ? "2" : typeOf(*last)};
    if (next != events.end()) {
        types.push_back(typeOf(*next));
    }
    return types;
}

/// What a report tells: who runs, that it does, the versions of client and host, the log-in.
void compareReport(Comparison& comparison, std::size_t at) {
    const Json& event = comparison.facts.events[at];
    const auto fields = event.value("fields", std::vector<std::string>());
    const std::string name = fields.empty() ? "" : fields[0];
    if (name.rfind("trayhost", 0) != 0) {
        comparison.differ("report", "of trayhost", joined(fields));
        return;
    }
    const std::vector<std::string> types = typesAt(comparison.facts.events, at);
    std::vector<std::vector<std::string>> right;
    for (const ClientState* state : {&comparison.before, &comparison.now}) {
        for (const std::string& type : types) {
            right.push_back({name, "run", toldVersion(*state, clientModule),
                             toldVersion(*state, name), type, "", ""});
        }
    }
    if (std::find(right.begin(), right.end(), fields) == right.end()) {
        comparison.differ("report", joined(right.back()), joined(fields));
    }
}

} // namespace

void compareReports(Comparison& comparison) {
    const std::vector<Json>& events = comparison.facts.events;
    std::vector<std::int64_t> times;
    for (std::size_t i = 0; i < events.size(); ++i) {
        if (!isKind(events[i], "event")) {
            continue;
        }
        compareReport(comparison, i);
        times.push_back(events[i].value("t", std::int64_t{0}));
        if (times.size() > 1 && times.back() - times[times.size() - 2] < reportGap) {
            comparison.differ("reports", "14.4 s between two",
                              std::to_string(times.back() - times[times.size() - 2]) + " ms");
        }
    }
    const std::size_t expected = comparison.expect.value("reports", std::size_t{0});
    if (times.size() < expected) {
        comparison.differ("reports", std::to_string(expected) + " at least",
                          std::to_string(times.size()));
    }
}

} // namespace sandbox
