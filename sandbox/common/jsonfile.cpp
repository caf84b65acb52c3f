#include "sandbox/common/jsonfile.h"

namespace sandbox {

std::optional<nlohmann::json> readJson(const std::filesystem::path& file) {
    const std::optional<std::string> text = readFile(file);
    if (!text) {
        return std::nullopt;
    }
    nlohmann::json value = nlohmann::json::parse(*text, nullptr, false);
    return value.is_discarded() ? std::nullopt : std::optional(std::move(value));
}

bool writeJson(const std::filesystem::path& file, const nlohmann::json& value,
               Durability durability) {
    try {
        return replaceFile(file, value.dump(2) + '\n', durability);
    } catch (const nlohmann::json::type_error&) {
        return false;
    }
}

} // namespace sandbox
