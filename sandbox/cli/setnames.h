#pragma once

#include <span>
#include <string>

#include <nlohmann/json.hpp>

/// What can be set of a run's client, and how each is put into its file.
namespace sandbox {

/// What stands behind the sign of "KEY=VALUE".
enum class SetForm { word, number, text, list };

struct NameToSet {
    const char* key;
    const char* values; ///< in words
    SetForm form;
    bool isSetting; ///< of the settings store, and not of the configuration
    /// Changes the file's object. Throws std::runtime_error, with nothing changed, for a wrong
    /// value.
    void (*set)(nlohmann::json& file, const std::string& key, const nlohmann::json& value,
                const char* values);
};

std::span<const NameToSet> setNames();

/// Throws std::runtime_error when the key is none.
const NameToSet& nameToSet(const std::string& key);

/// Throws std::runtime_error when the object is no log-in of the configuration. That is read as a
/// whole, so one wrong member would lose all.
void checkLogin(const nlohmann::json& login);

/// Throws std::runtime_error with what the value could be.
[[noreturn]] void refuseToSet(const std::string& key, const nlohmann::json& value,
                              const char* values);

} // namespace sandbox
