#include <algorithm>

#include "fuzz/fuzz.h"
#include "kelvar/api.pb.h"
#include "support/fakehost.h"
#include "updatekelvar/fetch/kelvarfetch.h"
#include "updatekelvar/fetch/xpbjson.h"

// The materials' parameters, from the platform's answer to rows. Input: the answer.

namespace {

using Answered = kelvar::BatchGetMaterialMeta_Response;

constexpr const char* knownParameters[] = {"osver",     "file_path", "file_md5",  "check_sys",
                                           "check_app", "non_cab",   "dependent", "exec"};

std::string withBackslashes(std::string path) {
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

void tellsParameters(const XMaterialMetaData& row, const kelvar::types::material::Meta& meta) {
    std::map<std::string, std::string> given(meta.extends().begin(), meta.extends().end());
    for (const char* name : knownParameters) {
        given[name]; // a row has each, empty where none was given
    }
    fuzz::require(row.extends == given, "a row holds its parameters as they came");
    fuzz::require(row.filePath == withBackslashes(given["file_path"]), "a path keeps its names");
    fuzz::require(!row.nonCab || given["non_cab"].find_first_of("123456789") != std::string::npos,
                  "a file is plain by a number only", given["non_cab"]);
    fuzz::require((row.checkApp == nullptr) == given["check_app"].empty() &&
                      (row.checkSys == nullptr) == given["check_sys"].empty() &&
                      (row.exec == nullptr) == given["exec"].empty(),
                  "what is not given is not asked");
}

void asksConditions(const XMaterialMetaData& row) {
    for (const auto& check : {row.checkApp, row.checkSys}) {
        fuzz::require(!check || check->check() == check->check(), "a condition is only read");
    }
}

} // namespace

FUZZ_TARGET(parameters) {
    Answered answer;
    XPbJson().fromJsonString(input, &answer, false);
    FakeHost host;
    host.versions.entries["OrvSecurityver.dll"] = "2.0.0.1001";
    host.answers["BatchGetMaterialMeta"] = {0, 200, input};
    const std::vector<XMaterialVersionKey> keys(static_cast<std::size_t>(answer.metas_size()));
    const auto address = std::make_shared<XFileStorageAddr>();
    int called = 0;
    const auto receive = [&](const std::shared_ptr<XBatchGetMaterialMetaData>& data) {
        ++called;
        fuzz::require((data == nullptr) == input.empty(), "each answer gives its rows");
        for (std::size_t i = 0; data && i < keys.size(); ++i) {
            tellsParameters(data->materials.at(i), answer.metas(static_cast<int>(i)).meta());
            asksConditions(data->materials[i]);
        }
    };
    XKelvarFetch().fetchMaterialMeta(keys, address, receive);
    fuzz::require(called == 1, "an answer is handed over once");
}
