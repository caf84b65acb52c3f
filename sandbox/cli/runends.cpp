#include "sandbox/cli/runends.h"

#include <string>

#include "sandbox/cli/notes.h"

namespace sandbox {
namespace {

constexpr const char* runBegins = "update plugin, kelvar, task fetch, check ...";
constexpr const char* ofPackage = "update plugin, pkg, task ";
constexpr const char* chainEnds = "update plugin, queue, run end.";

} // namespace

RunEnds::What RunEnds::see(const nlohmann::json& event) {
    if (!isKind(event, "log")) {
        return What::nothing;
    }
    const std::string text = event.value("text", "");
    const auto thread = event.value("thread", 0UL);
    if (text.rfind(runBegins, 0) == 0) {
        inRun.insert(thread);
        return What::begins;
    }
    if (text.rfind(ofPackage, 0) == 0) {
        inPackage.insert(thread);
    }
    if (text.rfind(chainEnds, 0) != 0) {
        return What::nothing;
    }
    if (inRun.erase(thread) > 0) {
        return What::ends;
    }
    return inPackage.erase(thread) > 0 ? What::packageEnds : What::nothing;
}

} // namespace sandbox
