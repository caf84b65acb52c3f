#include "doctor/plantedcases.h"

// The version store, the settings, and the offer in them.

namespace {

using sandbox::doctor::Code;
using Client = HealthyClient;

void storeOffer(Client& client, int status, const std::string& version, const std::string& md5) {
    client.setJson(
        "KEY_UPDATE_UPGRADE",
        {{"status", status}, {"needUpgrade", true}, {"version", version}, {"packageMD5", md5}});
}

const Case storeRows[] = {
    {"VersionsBroken", [](Client& c) { c.overwritten["sandbox/versions.json"] = "[1]"; },
     Code::versionsUnreadable, "versions.json"},
    {"VersionNoNumber", [](Client& c) { c.versions["update\\notes.txt"] = "1.3.beta"; },
     Code::versionForm, "notes.txt"},
    {"VersionTooLong", [](Client& c) { c.versions["update\\notes.txt"] = std::string(64, '1'); },
     Code::versionForm, "notes.txt"},
    {"VersionUnderSlashes",
     [](Client& c) {
         c.versions = {{"data/rules.dat", "1.3.0.1600"}};
     },
     Code::versionKey, "data/rules.dat"},
    {"VersionTwice", [](Client& c) { c.versions["DATA\\rules.dat"] = "1.3.0.1600"; },
     Code::versionKey, "rules.dat"},
    {"VersionOfNothing", [](Client& c) { c.versions["gone.dat"] = "1.0.0.0"; },
     Code::versionFileMissing, "gone.dat"},
    {"VersionOfImage", [](Client& c) { c.versions["engine\\core.dll"] = "1.0.0.0"; },
     Code::versionShadowed, "core.dll"},
    {"ChannelVersion", [](Client& c) { c.versions["update\\version.dat"] = "2.0.0.5"; },
     Code::channelVersion, "version.dat"},
    {"VersionsArePipe", [](Client& c) { c.putPipe("sandbox/versions.json"); },
     Code::versionsUnreadable, "versions.json"},
    {"SettingsAreFolder",
     [](Client& c) {
         c.restart();
         c.list.clear();
         c.putFolder("sandbox/settings.json");
     },
     Code::settingsUnreadable, "settings.json"},
    {"SettingTooDeep",
     [](Client& c) {
         const std::size_t levels = 100000;
         c.settings["KEY_PLUGIN_UPDATE_FILE_LIST"] =
             "{\"list\":" + std::string(levels, '[') + std::string(levels, ']') + "}";
     },
     Code::settingKind, "KEY_PLUGIN_UPDATE_FILE_LIST"},
    {"SettingsBroken",
     [](Client& c) {
         c.restart();
         c.list.clear(); // what waited there is not known any more
         c.overwritten["sandbox/settings.json"] = "{\"a\":";
     },
     Code::settingsUnreadable, "settings.json"},
    {"ListSettingBroken",
     [](Client& c) { c.settings["KEY_UPDATE_KELVAR_TEMP_FILE_LIST"] = "[\"a\""; },
     Code::settingNoJson, "TEMP_FILE_LIST"},
    {"FilesSettingForm",
     [](Client& c) {
         c.setJson("KEY_PLUGIN_UPDATE_FILE_LIST", {{"list", {{"fileType", 1}}}});
     },
     Code::settingKind, "KEY_PLUGIN_UPDATE_FILE_LIST"},
    {"TimeIsText", [](Client& c) { c.settings["KEY_UPDATE_PKG_LAST_CHECK_TIME"] = "soon"; },
     Code::settingKind, "LAST_CHECK_TIME"},
    {"PackageChanged", [](Client& c) { storeOffer(c, 3, "1.4.0.1", otherMd5); }, Code::packageFile,
     "setup.exe"},
    {"PackageIsPipe",
     [](Client& c) {
         storeOffer(c, 3, "1.4.0.1", otherMd5);
         c.putPipe("client/update/setup.exe");
     },
     Code::strangeFile, "setup.exe"},
    {"PackageNotInstalled", [](Client& c) { storeOffer(c, 4, "1.4.0.1", otherMd5); },
     Code::packagePending, "UPGRADE"},
    {"PackageBrokenOff", [](Client& c) { storeOffer(c, 2, "1.4.0.1", otherMd5); },
     Code::packagePending, "UPGRADE"},
};

} // namespace

std::vector<Case> storeCases() {
    return {std::begin(storeRows), std::end(storeRows)};
}
