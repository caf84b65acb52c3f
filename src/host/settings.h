#pragma once

#include <cstdint>
#include <string>

/// Keys of the settings store that this module uses.
namespace settingkeys {

inline constexpr const char* kelvarLastCheckTime = "KEY_UPDATE_KELVAR_LAST_CHECK_TIME";
inline constexpr const char* kelvarTempFileList = "KEY_UPDATE_KELVAR_TEMP_FILE_LIST";
inline constexpr const char* kelvarPaddingFileList = "KEY_UPDATE_KELVAR_PADDING_FILE_LIST";
inline constexpr const char* fileList = "KEY_PLUGIN_UPDATE_FILE_LIST";
inline constexpr const char* pkgLastCheckTime = "KEY_UPDATE_PKG_LAST_CHECK_TIME";
inline constexpr const char* upgrade = "KEY_UPDATE_UPGRADE";
inline constexpr const char* ignoreVersionList = "KEY_UPDATE_IGNORE_VERSION_LIST";
inline constexpr const char* updateType = "UPDATE_TYPE"; ///< another module writes it
inline constexpr const char* language = "language";      ///< likewise

} // namespace settingkeys

/// Readers give the default when the store or the key is missing or a read fails, and
/// tell by their result whether the value is the store's. Writers answer false without
/// a store, else what the store answers. Any thread.
bool readSettingString(const char* key, std::string& value, const std::string& defaultValue);
bool readSettingUInt64(const char* key, std::uint64_t* value, const std::uint64_t* defaultValue);
bool readSettingUInt32(const char* key, std::uint32_t* value, const std::uint32_t* defaultValue);
bool writeSettingString(const char* key, const std::string& value);
bool writeSettingUInt64(const char* key, std::uint64_t value);
