#include "check/plantedcases.h"

// The client as it is laid out, what the upgrade server has for it, and changes of both.

std::vector<Case> clientCases() {
    return {
        {"FileKind", "\"kind\": \"data\"", "\"kind\": \"text\"", "value-unknown"},
        {"Holder", "\"by\": \"keeper.exe\"", "\"by\": \"keepr.exe\"", "name-unknown"},
        {"ClientPath", "{\"path\": \"rules.dat\", \"kind\"",
         "{\"path\": \"..\\\\rules.dat\", \"kind\"", "path-outside"},
        {"ImageVersion", "\"kind\": \"pe\", \"version\": \"1.2.0.1500\"",
         "\"kind\": \"pe\", \"version\": \"1.2\"", "version-form"},
        {"ImagePart", "\"kind\": \"pe\", \"version\": \"1.2.0.1500\"",
         "\"kind\": \"pe\", \"version\": \"1.2.0.65536\"", "version-form"},
        {"FileTwice", "{\"path\": \"rules.dat\", \"kind\": \"data\"}",
         "{\"path\": \"rules.dat\"}, {\"path\": \"RULES.dat\"}", "name-twice"},
        {"Version", "\"client\": {\n    \"version\": \"1.2.0.1500\"",
         "\"client\": {\n    \"version\": \"1.2.0\"", "version-form", 1},
        {"ClientFolder", "[\"update\\\\extras", "[\"..\\\\extras\", \"update\\\\extras",
         "path-outside"},
        {"OtherKindHolds", "\"by\": \"keeper.exe\"", "\"by\": \"rules.dat\"", "holder-kind"},
        {"Login", "\"token\": true", "\"token\": \"on\"", "member-kind"},
        {"LoginMember", "\"token\": true", "\"tokn\": true", "member-unknown"},
        {"LoginIsNumber", "\"login\": {\"token\": true}", "\"login\": 7", "member-kind"},
        {"System", "\"login\": {\"token\": true}", "\"os\": {\"build\": \"19045\"}", "member-kind"},
        {"Address", "\"login\": {\"token\": true}", "\"serverAddress\": 80", "member-kind"},
        {"InUse", "\"xnbase.dll\"", "\"xnbasis.dll\"", "name-unknown"},
        {"InUseBy", "\"xnbase.dll\", \"by\": \"keeper.exe\"", "\"xnbase.dll\", \"by\": \"a.dll\"",
         "holder-kind"},
        {"InUseByNobody", "\"xnbase.dll\", \"by\": \"keeper.exe\"",
         "\"xnbase.dll\", \"by\": \"nobody.exe\"", "name-unknown"},
        // What the upgrade server has.
        {"PackageVersion", "\"1.4.0.1\", \"size\"", "\"1.4\", \"size\"", "version-form"},
        {"PackagePath", "\"path\": \"ui.dll\"", "\"path\": \"..\\\\ui.dll\"", "path-outside"},
        {"PackageKind", "\"kind\": \"pe\", \"version\": \"1.4.0.1\"", "\"kind\": \"program\"",
         "value-unknown"},
        {"PackageImage", "\"kind\": \"pe\", \"version\": \"1.4.0.1\"",
         "\"kind\": \"pe\", \"version\": \"1.4.0.x\"", "version-form"},
        {"ChangeMember", "{\"fails\": true}", "{\"fail\": true}", "member-unknown"},
        {"ChangeKind", "{\"fails\": true}", "{\"fails\": 1}", "member-kind"},
        {"ChangeVersion", "{\"fails\": true}", "{\"version\": \"1.5\"}", "version-form"},
        {"ChangeOfFiles", "{\"fails\": true}", "{\"files\": [{\"kind\": \"data\"}]}",
         "member-missing"},
        {"ChangeOfNothing", "\"package\": {\"version\"", "\"comment\": {\"version\"",
         "member-missing", -10},
    };
}
