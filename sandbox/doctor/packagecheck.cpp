#include <cstdint>

#include "sandbox/common/jsondepth.h"
#include "sandbox/doctor/checks.h"
#include "sandbox/doctor/settingnames.h"

namespace sandbox::doctor {
namespace {

using Json = nlohmann::json;

constexpr const char* setupKey = "update\\setup.exe";
constexpr const char* versionFileKey = "orvsecurityver.dll";

/// States of the stored offer that are looked at.
enum Status : std::uint64_t { transferBegun = 2, onDisk = 3, setupStarted = 4, wrongPackage = 6 };

/// The stored offer; discarded when there is none, or it is damaged.
Json recordOf(const Snapshot& snapshot) {
    Json none(Json::value_t::discarded);
    if (!snapshot.settings || !snapshot.settings->contains(packageSetting)) {
        return none;
    }
    const Json& text = snapshot.settings->at(packageSetting);
    const Json record = text.is_string() ? parsedJson(text.get_ref<const std::string&>()) : none;
    return record.is_object() && record.value("status", Json()).is_number_unsigned() ? record
                                                                                     : none;
}

std::string textOf(const Json& record, const char* member) {
    const Json value = record.value(member, Json());
    return value.is_string() ? value.get<std::string>() : "";
}

void checkSetupFile(const Snapshot& snapshot, const Json& record, Report& report) {
    const FileFacts* setup = snapshot.fileAt(setupKey);
    if (snapshot.isUnknown(setupKey)) {
        return;
    }
    if (setup == nullptr || setup->md5 != lowered(textOf(record, "packageMD5"))) {
        report.add(Code::packageFile, setupKey,
                   std::string(setupKey) +
                       (setup == nullptr ? " is not there" : " is not the package") +
                       ", which is stored as fetched");
    }
}

} // namespace

void checkPackage(const Snapshot& snapshot, Report& report) {
    const Json record = recordOf(snapshot);
    if (record.is_discarded()) {
        return;
    }
    const auto pending = [&](const std::string& what) {
        report.add(Code::packagePending, packageSetting,
                   std::string(packageSetting) + ": the package of version " +
                       textOf(record, "version") + " " + what);
    };
    const FileFacts* client = snapshot.fileAt(versionFileKey);
    switch (record.at("status").get<std::uint64_t>()) {
    case transferBegun:
        return pending("was not fetched to its end");
    case onDisk:
        return checkSetupFile(snapshot, record, report);
    case setupStarted:
        if (client != nullptr && client->version != textOf(record, "version")) {
            pending("was started, and the client is of version " + client->version);
        }
        return;
    case wrongPackage:
        return pending("was fetched and is not what was announced");
    default:
        return;
    }
}

} // namespace sandbox::doctor
