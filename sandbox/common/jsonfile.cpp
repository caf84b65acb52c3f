#include "sandbox/common/jsonfile.h"

#include "sandbox/common/jsondepth.h"
#include "sandbox/platform/filelock.h"

namespace sandbox {

std::optional<nlohmann::json> readJson(const std::filesystem::path& file) {
    const std::optional<std::string> text = readFile(file);
    if (!text) {
        return std::nullopt;
    }
    nlohmann::json value = parsedJson(*text);
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

std::filesystem::path lockOf(const std::filesystem::path& file) {
    std::filesystem::path lock = file;
    lock += ".lock";
    return lock;
}

bool updateJson(const std::filesystem::path& file,
                const std::function<void(nlohmann::json&)>& change) {
    const FileLock lock(lockOf(file));
    if (!lock.isHeld()) {
        return false;
    }
    std::error_code error;
    const bool isThere = std::filesystem::exists(file, error) || error;
    nlohmann::json value =
        isThere ? readJson(file).value_or(nlohmann::json()) : nlohmann::json::object();
    if (!value.is_object()) {
        return false; // a damaged file is evidence
    }
    change(value);
    return writeJson(file, value);
}

} // namespace sandbox
