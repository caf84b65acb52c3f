#include <nlohmann/json.hpp>

#include "fuzz/fuzz.h"
#include "updatepkg/upgradedata.h"

// The upgrade server's answer about packages. Input: the stored offer, and the answer in the
// lines behind.

namespace {

const nlohmann::json* memberOf(const nlohmann::json& object, const char* name) {
    const auto found = object.find(name);
    return found == object.end() ? nullptr : &*found;
}

std::string storedAfter(const std::string& text) {
    UpgradeData data;
    data.fromStored(text);
    return data.toStored();
}

/// The offer's members of the right type go into the stored text as they came.
void tellsOffer(const nlohmann::json& answer, const nlohmann::json& stored) {
    const nlohmann::json* data = memberOf(answer, "data");
    const nlohmann::json* info =
        data && data->contains("needUpgrade") ? memberOf(*data, "info") : nullptr;
    for (const char* name : {"version", "packageMD5", "packageURL", "content", "isForce"}) {
        const nlohmann::json* member = info ? memberOf(*info, name) : nullptr;
        fuzz::require(!member || member->type() != stored.at(name).type() ||
                          *member == stored.at(name),
                      "an offer is stored as it came", name);
    }
}

} // namespace

FUZZ_TARGET(packageanswer) {
    std::string answer = input;
    const std::string stored = fuzz::takeLine(answer);
    UpgradeData data;
    if (nlohmann::json::accept(stored)) {
        data.fromStored(stored);
    }
    const std::string before = data.toStored();
    try {
        data.fromResponse(answer);
    } catch (const nlohmann::json::exception&) {
        fuzz::require(!nlohmann::json::accept(answer), "every JSON is taken as an answer");
        fuzz::require(data.toStored() == before, "what is no JSON changes nothing");
        return;
    }
    const std::string after = data.toStored();
    const nlohmann::json answered = nlohmann::json::parse(answer);
    fuzz::require(answered.contains("data") || after == before,
                  "an answer without data changes nothing");
    tellsOffer(answered, nlohmann::json::parse(after));
    fuzz::require(storedAfter(after) == after, "a stored offer loads the same", after);
}
