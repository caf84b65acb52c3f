#include "check/plantedcases.h"

// What the format has: members, their kinds, words and names.

namespace {

/// Materials by a rule, ahead of the others.
std::string bulkOf(const std::string& least, const std::string& most, const std::string& methods) {
    return R"("bulk": {"count": 1, "cabinets": 0, "version": "1.0", "minSize": )" + least +
           R"(, "maxSize": )" + most + R"(, "methods": )" + methods + R"(}, "materials": [)";
}

} // namespace

std::vector<Case> formatCases() {
    return {
        {"Comma", "\"seed\": 1,", "\"seed\": 1", "syntax", 1},
        {"Quote", "\"hostExit\": 0", "\"hostExit: 0", "syntax", 0},
        {"Twice", "\"seed\": 1", "\"seed\": 1, \"seed\": 2", "member-twice"},
        {"Misspelt", "\"hostExit\"", "\"hostexit\"", "member-unknown"},
        {"Missing", "\"version\": \"1.3.0.1600\", \"path\": \"pair/right.dat\"",
         "\"path\": \"pair/right.dat\"", "member-missing"},
        {"Kind", "\"hostExit\": 0", "\"hostExit\": \"0\"", "member-kind"},
        {"ExpectedCount", "\"hostExit\": 0", "\"downloads\": \"a\"", "member-kind"},
        {"ExpectedNames", "\"hostExit\": 0", "\"versionsOf\": \"a\"", "member-kind"},
        {"ExpectedStarts", "\"hostExit\": 0", "\"background\": {\"a.exe\": \"1\"}", "member-kind"},
        {"ExpectedRecord", "\"hostExit\": 0", "\"record\": \"3\"", "member-kind"},
        {"ExpectedVersion", "\"1.3.0.1600\"]", "13]", "member-kind"},
        {"Questions", "\"offers\": \"all\"", "\"questions\": [5, -1]", "member-kind"},
        {"MoreQuestions", "\"offers\": \"all\"", "\"questions\": [5, 6]", "value-range"},
        {"BesideClient", "\"hostExit\": 0", "\"client\": \"either\"", "member-idle", -1},
        {"NumberTooGreat", "\"seed\": 1", "\"seed\": 1e999", "syntax"},
        {"NegativeSize", "\"size\": 901", "\"size\": -1", "member-kind"},
        {"Step", "\"do\": \"run\"", "\"do\": \"runs\"", "value-unknown"},
        {"State", "[\"placed\"", "[\"put\"", "value-unknown"},
        {"Reason", "[\"placed\", \"1.3.0.1600\"]", "[\"refused\", null, \"too old\"]",
         "value-unknown"},
        {"Command", "\"check\", {", "\"chek\", {", "value-unknown"},
        {"StepMember", "{\"wait\": 100}", "{\"wait\": 100, \"until\": 3}", "member-unknown"},
        {"StepOfTwo", "{\"wait\": 100}", "{\"wait\": 100, \"waitLog\": \"a\"}", "step-several"},
        {"StepOfOther", "{\"wait\": 100}", "{\"waitEnd\": \"kelvar\"}", "value-unknown"},
        {"EmptyStep", "{\"wait\": 100}", "{}", "member-missing"},
        {"Fault", "\"refused\"", "\"refuse\"", "fault-unknown"},
        {"FaultPlace", "\"on\": \"a\"", "\"on\": \"b\"", "fault-unknown"},
        {"Offered", "\"offers\": \"all\"", "\"offers\": [\"a\",\n\"b\"]", "name-unknown", 1},
        {"Expected", "{\"a\": [\"placed\"", "{\"b\": [\"placed\"", "name-unknown"},
        {"AskedOfNobody", "{a.fileMd5}", "{nobody.fileMd5}", "name-unknown"},
        {"AskedForNothing", "{a.fileMd5}", "{a.filemd5}", "name-unknown"},
        {"AskedOfPackage", "\"{package.size}\"", "[[\"{package.path}\"]]", "name-unknown"},
        {"AskedInName", "{\"a.dll\": \"", "{\"{b.path}\": \"", "name-unknown"},
        {"SetOfStep", "\"muteMode\"", "\"mutemode\"", "set-refused"},
        {"SetOfUi", "{\"login\": \"on\"}", "{\"Login\": \"on\"}", "set-refused"},
        {"NameOfPlace", "\"name\": \"right\"", "\"name\": \"package\"", "name-form"},
        {"NameOfQuestion", "\"name\": \"right\"", "\"name\": \"GetPacketMeta\"", "name-form"},
        {"NameOfAll", "\"name\": \"right\"", "\"name\": \"*\"", "name-form"},
        {"NameOfPath", "\"name\": \"right\"", "\"name\": \"../right\"", "name-form"},
        {"BulkOfNoSize", "\"materials\": [", bulkOf("2", "1", "[\"lzx\"]"), "value-range"},
        {"BulkOfNoMethod", "\"materials\": [", bulkOf("1", "2", "[]"), "value-range"},
        {"NameTwice", "\"name\": \"right\"", "\"name\": \"left\"", "name-twice"},
    };
}
