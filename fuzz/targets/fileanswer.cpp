#include <map>
#include <nlohmann/json.hpp>

#include "fuzz/fuzz.h"
#include "updatefile/updatefilelist.h"

// The upgrade server's answer about data files. Input: the stored list, and the answer in the
// lines behind.

namespace {

/// The list of a stored text that may be anything, as a start takes it.
std::shared_ptr<XUpdateFileList> storedFiles(const std::string& text) {
    auto list = std::make_shared<XUpdateFileList>();
    list->fromStored(nlohmann::json::accept(text) ? text : std::string());
    return list;
}

/// The address of each file that can be fetched; of several entries the last counts.
std::map<std::int32_t, std::string> addressesOf(const XUpdateFileList& list) {
    std::map<std::int32_t, std::string> addresses;
    for (std::size_t i = 0; i < list.size(); ++i) {
        fuzz::require(fileNameOfType(list[i]->fileType) != nullptr, "unknown files are dropped");
        if (list[i]->hasUrl()) {
            addresses[list[i]->fileType] = list[i]->fileURL;
        }
    }
    return addresses;
}

} // namespace

FUZZ_TARGET(fileanswer) {
    std::string text = input;
    const std::shared_ptr<XUpdateFileList> local = storedFiles(fuzz::takeLine(text));
    const auto answer = std::make_shared<XUpdateFileList>();
    try {
        answer->fromResponse(text);
    } catch (const nlohmann::json::exception&) {
        fuzz::require(!nlohmann::json::accept(text), "every JSON is taken as an answer");
        fuzz::require(answer->size() == 0, "what is no JSON changes nothing");
        return;
    }
    std::map<std::int32_t, std::string> wanted = addressesOf(*local);
    for (const auto& [type, address] : addressesOf(*answer)) {
        wanted[type] = address;
    }
    const std::size_t size = local->size(); // with an entry of each type
    local->merge(answer);
    fuzz::require(local->size() == size, "an entry takes the place of its type's");
    fuzz::require(addressesOf(*local) == wanted, "the answer's addresses replace the stored ones");
    const std::string stored = local->toStored();
    fuzz::require(storedFiles(stored)->toStored() == stored, "a stored list loads the same",
                  stored);
}
