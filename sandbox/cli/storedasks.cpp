#include "sandbox/cli/storedasks.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

constexpr const char* dataVersion = "update\\version.dat";
constexpr const char* neverStored = "0.0.0.0";
constexpr const char* fileListKey = "KEY_PLUGIN_UPDATE_FILE_LIST";

/// Types and versions of the data files, as the client last took them from the server.
Json storedFiles(const ClientState& client) {
    Json versions = Json::object();
    const Json stored =
        Json::parse(client.settings.value(fileListKey, std::string()), nullptr, false);
    const Json list = stored.is_object() ? stored.value("list", Json::array()) : Json::array();
    for (const Json& entry : list) {
        versions[std::to_string(entry.value("fileType", 0))] = entry.value("fileVersion", "");
    }
    return versions;
}

} // namespace

Json withStoredAsks(Json options, const ClientState& client) {
    Json& asks = options["asks"];
    asks = asks.is_object() ? asks : Json::object();
    if (asks.value("version", "") == storedValue) {
        const auto found = client.versions.find(dataVersion);
        asks["version"] = found == client.versions.end() ? neverStored : found->second;
    }
    const Json stored = storedFiles(client);
    if (asks.contains("files")) {
        for (auto& [type, version] : asks["files"].items()) {
            if (version == storedValue) {
                version = stored.value(type, neverStored);
            }
        }
    }
    return options;
}

} // namespace sandbox
