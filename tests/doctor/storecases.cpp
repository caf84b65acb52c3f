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
    {"VersionsBroken", Code::versionsUnreadable, "versions.json",
     [](Client& c) {
         c.overwritten["sandbox/versions.json"] = "[1]";
     }},
    {"VersionNoNumber", Code::versionForm, "notes.txt",
     [](Client& c) {
         c.versions["update\\notes.txt"] = "1.3.beta";
     }},
    {"VersionTooLong", Code::versionForm, "notes.txt",
     [](Client& c) {
         c.versions["update\\notes.txt"] = std::string(64, '1');
     }},
    {"VersionUnderSlashes", Code::versionKey, "data/rules.dat",
     [](Client& c) {
         c.versions = {{"data/rules.dat", "1.3.0.1600"}};
     }},
    {"VersionTwice", Code::versionKey, "rules.dat",
     [](Client& c) {
         c.versions["DATA\\rules.dat"] = "1.3.0.1600";
     }},
    {"VersionOfNothing", Code::versionFileMissing, "gone.dat",
     [](Client& c) {
         c.versions["gone.dat"] = "1.0.0.0";
     }},
    {"VersionOfImage", Code::versionShadowed, "core.dll",
     [](Client& c) {
         c.versions["engine\\core.dll"] = "1.0.0.0";
     }},
    {"ChannelVersion", Code::channelVersion, "version.dat",
     [](Client& c) {
         c.versions["update\\version.dat"] = "2.0.0.5";
     }},
    {"VersionsArePipe", Code::versionsUnreadable, "versions.json",
     [](Client& c) {
         c.putPipe("sandbox/versions.json");
     }},
    {"SettingsAreFolder", Code::settingsUnreadable, "settings.json",
     [](Client& c) {
         c.restart();
         c.list.clear();
         c.putFolder("sandbox/settings.json");
     }},
    {"SettingTooDeep", Code::settingKind, "KEY_PLUGIN_UPDATE_FILE_LIST",
     [](Client& c) {
         const std::size_t levels = 100000;
         c.settings["KEY_PLUGIN_UPDATE_FILE_LIST"] =
             "{\"list\":" + std::string(levels, '[') + std::string(levels, ']') + "}";
     }},
    {"SettingsBroken", Code::settingsUnreadable, "settings.json",
     [](Client& c) {
         c.restart();
         c.list.clear(); // what waited there is not known any more
         c.overwritten["sandbox/settings.json"] = "{\"a\":";
     }},
    {"ListSettingBroken", Code::settingNoJson, "TEMP_FILE_LIST",
     [](Client& c) {
         c.settings["KEY_UPDATE_KELVAR_TEMP_FILE_LIST"] = "[\"a\"";
     }},
    {"FilesSettingForm", Code::settingKind, "KEY_PLUGIN_UPDATE_FILE_LIST",
     [](Client& c) {
         c.setJson("KEY_PLUGIN_UPDATE_FILE_LIST", {{"list", {{"fileType", 1}}}});
     }},
    {"TimeIsText", Code::settingKind, "LAST_CHECK_TIME",
     [](Client& c) {
         c.settings["KEY_UPDATE_PKG_LAST_CHECK_TIME"] = "soon";
     }},
    {"PackageChanged", Code::packageFile, "setup.exe",
     [](Client& c) {
         storeOffer(c, 3, "1.4.0.1", otherMd5);
     }},
    {"PackageIsPipe", Code::strangeFile, "setup.exe",
     [](Client& c) {
         storeOffer(c, 3, "1.4.0.1", otherMd5);
         c.putPipe("client/update/setup.exe");
     }},
    {"PackageNotInstalled", Code::packagePending, "UPGRADE",
     [](Client& c) {
         storeOffer(c, 4, "1.4.0.1", otherMd5);
     }},
    {"PackageBrokenOff", Code::packagePending, "UPGRADE",
     [](Client& c) {
         storeOffer(c, 2, "1.4.0.1", otherMd5);
     }},
};

} // namespace

std::vector<Case> storeCases() {
    return {std::begin(storeRows), std::end(storeRows)};
}
