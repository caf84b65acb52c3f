#pragma once

/// The client's settings that hold more than a plain value; the doctor's own copy, so that a
/// slip in the plug-in's table does not hide itself.
namespace sandbox::doctor {

inline constexpr const char* paddingListSetting = "KEY_UPDATE_KELVAR_PADDING_FILE_LIST";
inline constexpr const char* tempListSetting = "KEY_UPDATE_KELVAR_TEMP_FILE_LIST";
inline constexpr const char* fileListSetting = "KEY_PLUGIN_UPDATE_FILE_LIST";
inline constexpr const char* ignoreListSetting = "KEY_UPDATE_IGNORE_VERSION_LIST";
inline constexpr const char* packageSetting = "KEY_UPDATE_UPGRADE";
inline constexpr const char* kelvarTimeSetting = "KEY_UPDATE_KELVAR_LAST_CHECK_TIME";
inline constexpr const char* packageTimeSetting = "KEY_UPDATE_PKG_LAST_CHECK_TIME";
inline constexpr const char* updateTypeSetting = "UPDATE_TYPE";
inline constexpr const char* languageSetting = "language";

} // namespace sandbox::doctor
