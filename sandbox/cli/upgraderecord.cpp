#include "sandbox/cli/upgraderecord.h"

#include <array>

#include "host/settings.h"
#include "sandbox/common/jsonfile.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

/// By the record's status.
constexpr std::array<const char*, 7> states{"nothing is known of it",
                                            "can be downloaded",
                                            "is being downloaded",
                                            "is on disk and can be installed",
                                            "its setup was started",
                                            "is installed",
                                            "what is on disk is not the announced package"};

} // namespace

Json recordOf(const std::string& text) {
    Json record = Json::parse(text, nullptr, false);
    return record.is_object() ? record : Json::object();
}

Json storedRecord(const Folders& folders) {
    const Json settings = readJson(folders.settings()).value_or(Json::object());
    return recordOf(settings.value(settingkeys::upgrade, ""));
}

int statusOf(const Json& record) {
    return record.value("status", 0);
}

std::string stateText(const Json& record) {
    const int status = statusOf(record);
    const auto at = static_cast<std::size_t>(status);
    return at < states.size() ? states[at] : "status " + std::to_string(status);
}

} // namespace sandbox
