#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

#include "sandbox/check/scenariocheck.h"

// One mistake a row, written into a scenario without any; exactly that one is to be found, on
// the line on which it stands.

namespace {

using sandbox::check::checkScenario;
using sandbox::check::Mistake;

const std::string right = R"json({
  "title": "a scenario without a mistake", "seed": 1,
  "client": {
    "version": "1.2.0.1500",
    "versions": {"rules.dat": "1.2.0.1500"},
    "files": [
      {"path": "a.dll", "kind": "pe", "version": "1.2.0.1500"},
      {"path": "rules.dat", "kind": "data"},
      {"path": "keeper.exe", "kind": "holder"}
    ],
    "held": [{"file": "a.dll", "by": "keeper.exe"}]
  },
  "platform": {
    "version": "1.3.0.1600",
    "modules": {"/orvviruslib": "2026-11-20", "/net": "1.3"},
    "materials": [
      {"name": "a", "version": "1.3.0.1600", "path": "a.dll",
       "parameters": {"check_app": "%appver%>=\"1.0\"&&%appver%<\"9.0\""},
       "file": {"kind": "pe", "version": "1.3.0.1600", "size": 9000}},
      {"name": "rules", "version": "1.3.0.1600", "path": "rules.dat", "module": "/orvviruslib",
       "parameters": {
         "exec": "(%process%=\"keeper.exe\" %param%=\"-a\")&&(%process%=\"keeper.exe\" %param%=\"\")",
         "check_sys": "%sysver%>=\"10.0.10240\""
       },
       "file": {"size": 900},
       "cabinet": {"method": "mszip",
         "with": [{"name": "notes.txt"}]}},
      {"name": "left", "version": "1.3.0.1600", "path": "pair/left.dat",
       "parameters": {"dependent": "pair"},
       "file": {"size": 900}},
      {"name": "right", "version": "1.3.0.1600", "path": "pair/right.dat",
       "parameters": {"dependent": "pair"},
       "file": {"size": 901}}
    ]
  },
  "phases": [
    {"do": "run", "offers": "all",
     "faults": [{"on": "a", "fault": "refused"}],
     "ui": ["check", {"wait": 100}],
     "expect": {
       "materials": {"a": ["placed", "1.3.0.1600"]},
       "hostExit": 0
     }}
  ]
})json";

struct Case {
    const char* name;
    const char* text; ///< of the right scenario, in which it stands once
    const char* by;
    const char* code;
    int below = 0; ///< lines from the text's begin to the mistake
};

void PrintTo(const Case& tested, std::ostream* out) {
    *out << tested.name;
}

const char* const range = R"(%appver%>=\"1.0\"&&%appver%<\"9.0\")";
const char* const exec =
    R"((%process%=\"keeper.exe\" %param%=\"-a\")&&(%process%=\"keeper.exe\" %param%=\"\"))";
const char* const system = R"("check_sys": "%sysver%>=\"10.0.10240\"")";

const Case cases[] = {
    // The format.
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
    {"FileKind", "\"kind\": \"data\"", "\"kind\": \"text\"", "value-unknown"},
    {"Step", "\"do\": \"run\"", "\"do\": \"runs\"", "value-unknown"},
    {"State", "[\"placed\"", "[\"put\"", "value-unknown"},
    {"Reason", "[\"placed\", \"1.3.0.1600\"]", "[\"refused\", null, \"too old\"]", "value-unknown"},
    {"Command", "\"check\", {", "\"chek\", {", "value-unknown"},
    {"StepMember", "{\"wait\": 100}", "{\"wait\": 100, \"until\": 3}", "member-unknown"},
    {"StepOfTwo", "{\"wait\": 100}", "{\"wait\": 100, \"waitLog\": \"a\"}", "step-several"},
    {"StepOfOther", "{\"wait\": 100}", "{\"waitEnd\": \"kelvar\"}", "value-unknown"},
    {"EmptyStep", "{\"wait\": 100}", "{}", "member-missing"},
    {"Fault", "\"refused\"", "\"refuse\"", "fault-unknown"},
    {"FaultPlace", "\"on\": \"a\"", "\"on\": \"b\"", "fault-unknown"},
    {"Offered", "\"offers\": \"all\"", "\"offers\": [\"a\",\n\"b\"]", "name-unknown", 1},
    {"Expected", "{\"a\": [\"placed\"", "{\"b\": [\"placed\"", "name-unknown"},
    {"Holder", "\"by\": \"keeper.exe\"", "\"by\": \"keepr.exe\"", "name-unknown"},
    {"NameTwice", "\"name\": \"right\"", "\"name\": \"left\"", "name-twice"},
    {"ClientPath", "{\"path\": \"rules.dat\", \"kind\"", "{\"path\": \"..\\\\rules.dat\", \"kind\"",
     "path-outside"},
    {"ImageVersion", "\"kind\": \"pe\", \"version\": \"1.2.0.1500\"",
     "\"kind\": \"pe\", \"version\": \"1.2\"", "version-form"},
    // Conditions.
    {"OtherTag", range, R"(%sysver%>=\"1.0\")", "expression-no-clause"},
    {"NoTag", range, R"(appver>=\"1.0\")", "expression-no-clause"},
    {"NoQuotes", range, "%appver%>=1.0", "expression-no-clause"},
    {"EmptyClause", range, R"(%appver%>=\"1.0\"&&&&%appver%<\"9.0\")", "expression-no-clause"},
    {"Blanks", range, R"(%appver% >= \"1.0\")", "expression-operator"},
    {"Operator", range, R"(%appver%=>\"1.0\")", "expression-operator"},
    {"Or", range, R"(%appver%>=\"1.0\"||%appver%<\"9.0\")", "expression-extra-text"},
    {"TwoLows", range, R"(%appver%>=\"1.0\"&&%appver%>\"1.1\")", "expression-clause-replaced"},
    {"EqualLost", range, R"(%appver%==\"1.0.0.1\"&&%appver%<\"9.0\")",
     "expression-clause-replaced"},
    {"Empty", range, R"(%appver%>=\"9.0\"&&%appver%<\"1.0\")", "expression-never"},
    {"EqualParts", range, R"(%appver%==\"1.0\")", "expression-never"},
    {"Letters", range, R"(%appver%>=\"1.x\")", "expression-version"},
    {"FourSystemParts", system, R"("check_sys": "%sysver%>=\"10.0.19045.0\"")",
     "expression-version"},
    {"SystemRange", system, R"("osver": ">=10.0.19045")", "osver-operator"},
    {"SystemParts", system, R"("osver": "10.0.19045.0")", "osver-form"},
    {"BothSystems", system, R"("osver": "10.0.19045", "check_sys": "%sysver%>\"10.0\"")",
     "check-sys-unused"},
    // Programs.
    {"NoProgram", exec, R"((%param%=\"-a\"))", "exec-no-program"},
    {"ParameterFirst", exec, R"((%param%=\"-a\" %process%=\"keeper.exe\"))", "exec-param-lost"},
    {"ProgramBare", exec, R"((%process%=keeper.exe %param%=\"-a\"))", "exec-no-program"},
    {"TrailingEntry", exec, R"((%process%=\"keeper.exe\")&&()", "exec-no-program"},
    {"Merged", exec, R"((%process%=\"keeper.exe\") && (%process%=\"keeper.exe\"))",
     "exec-entries-merged"},
    {"ParameterBare", exec, R"((%process%=\"keeper.exe\" %param%=-a))", "exec-param-lost"},
    {"NoSuchProgram", exec, R"((%process%=\"tools\\keepr.exe\"))", "exec-program-unknown"},
    // Targets.
    {"Climbs", "\"pair/left.dat\"", "\"pair/../../left.dat\"", "target-refused"},
    {"Drive", "\"pair/left.dat\"", "\"c:left.dat\"", "target-refused"},
    {"Root", "\"pair/left.dat\"", "\"\\\\left.dat\"", "target-refused"},
    {"Nothing", "\"pair/left.dat\"", "\"\"", "target-refused"},
    {"Folder", "\"pair/left.dat\"", "\"pair/\"", "target-refused"},
    {"Device", "\"pair/left.dat\"", "\"pair/NUL.dat\"", "target-refused"},
    {"Letters_", "\"pair/left.dat\"", "\"pair/übrig.dat\"", "target-not-ascii"},
    {"SameTarget", "\"pair/right.dat\"", "\"PAIR\\\\.\\\\left.dat\"", "target-twice"},
    // Hashes, versions, sizes, parameters.
    {"HashIsPath", "\"path\": \"pair/left.dat\"", "\"path\": \"pair/left.dat\", \"md5\": \"../a\"",
     "hash-refused"},
    {"HashIsShort", "\"path\": \"pair/left.dat\"", "\"path\": \"pair/left.dat\", \"md5\": \"abc\"",
     "hash-form"},
    {"HashIsAnothers", "\"dependent\": \"pair\"},\n       \"file\": {\"size\": 900}",
     "\"dependent\": \"pair\",\n\"file_md5\": \"0123456789abcdef0123456789abcdef\"},\n\"file\": "
     "{\"size\": 900}",
     "hash-wrong", 1},
    {"SameVersion", "\"a\", \"version\": \"1.3.0.1600\"", "\"a\", \"version\": \"1.2.0.1500\"",
     "version-never-newer"},
    {"OldImage", "\"version\": \"1.3.0.1600\", \"size\": 9000",
     "\"version\": \"1.1.0.1\", \"size\": 9000", "version-never-newer", -2},
    {"OlderImage", "\"version\": \"1.3.0.1600\", \"size\": 9000",
     "\"version\": \"1.2.9.1\", \"size\": 9000", "version-not-the-files", -2},
    {"DataOfToday", "\"rules\", \"version\": \"1.3.0.1600\"",
     "\"rules\", \"version\": \"1.2.0.1500\"", "version-never-newer"},
    {"VersionOfLetters", "\"left\", \"version\": \"1.3.0.1600\"",
     "\"left\", \"version\": \"latest\"", "version-form"},
    {"Packet", "{\n    \"version\": \"1.3.0.1600\"", "{\n    \"version\": \"2.0.0.5\"",
     "packet-version", 1},
    {"Huge", "\"size\": 901", "\"size\": 2147483648", "size-32-bit"},
    {"ParameterName", "\"check_app\"", "\"checkApp\"", "parameter-misspelt"},
    {"NonCabWord", "{\"dependent\": \"pair\"},\n       \"file\": {\"size\": 901}",
     "{\"dependent\": \"pair\", \"non_cab\": \"true\"},\n\"file\": {\"size\": 901}",
     "non-cab-form"},
    {"NonCab", "\"check_sys\"", "\"non_cab\": \"1\", \"check_sys\"", "non-cab-wrong"},
    // Cabinets.
    {"Method", "\"mszip\"", "\"zip\"", "cabinet-method"},
    {"OtherMember", "\"method\": \"mszip\"", "\"method\": \"mszip\", \"as\": \"rule.dat\"",
     "cabinet-member-missing"},
    {"MemberOutside", "\"notes.txt\"", "\"..\\\\notes.txt\"", "cabinet-member-outside"},
    {"MemberTwice", "\"notes.txt\"", "\"RULES.dat\"", "cabinet-member-twice"},
    {"MemberFolder", "\"notes.txt\"", "\"more\\\\notes.txt\"", "cabinet-member-folder"},
    // Together.
    {"Alone", "\"dependent\": \"pair\"},\n       \"file\": {\"size\": 901}",
     "\"dependent\": \"\"},\n\"file\": {\"size\": 901}", "group-of-one", -3},
    {"VirusModule", "\"/orvviruslib\": \"2026-11-20\", ", "", "viruslib-module", 5},
};

std::string changed(const Case& row) {
    std::string text = right;
    return text.replace(text.find(row.text), std::string(row.text).size(), row.by);
}

std::size_t lineOf(const Case& row) {
    const auto end = right.begin() + static_cast<std::ptrdiff_t>(right.find(row.text));
    return static_cast<std::size_t>(1 + std::count(right.begin(), end, '\n') + row.below);
}

std::optional<sandbox::check::Hashes> hashesOf(const std::string& /*material*/) {
    return sandbox::check::Hashes{std::string(32, 'a'), std::string(32, 'b')};
}

class PlantedMistake : public testing::TestWithParam<Case> {};

} // namespace

TEST_P(PlantedMistake, IsTheOnlyOne) {
    const auto mistakes = checkScenario(changed(GetParam()), "a.json", hashesOf);
    for (const Mistake& mistake : mistakes) {
        EXPECT_EQ(mistake.code, GetParam().code) << mistake.text;
        EXPECT_EQ(mistake.line, lineOf(GetParam())) << mistake.text;
        EXPECT_EQ(mistake.file, "a.json");
    }
    EXPECT_EQ(mistakes.size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Check, PlantedMistake, testing::ValuesIn(cases),
                         [](const auto& row) { return row.param.name; });

TEST(PlantedMistake, IsDocumented) {
    std::ifstream stream(DOCS "/authoring.md");
    const std::string document(std::istreambuf_iterator<char>(stream), {});
    for (const Case& row : cases) {
        EXPECT_NE(document.find("`" + std::string(row.code) + "`"), std::string::npos) << row.code;
    }
}

TEST(ScenarioCheck, FindsNothingInARightOne) {
    EXPECT_EQ(checkScenario(right, "a.json", hashesOf), std::vector<Mistake>());
}

TEST(ScenarioCheck, TellsAllAtOnceInTheOrderOfTheLines) {
    std::string text = right;
    for (const char* wrong : {"\"hostExit\"", "\"mszip\"", "\"seed\""}) {
        text.insert(text.find(wrong) + 1, "x");
    }
    std::vector<std::string> codes;
    for (const Mistake& mistake : checkScenario(text, "a.json")) {
        codes.push_back(mistake.code);
    }
    EXPECT_EQ(codes,
              (std::vector<std::string>{"member-unknown", "cabinet-method", "member-unknown"}));
}

TEST(ScenarioCheck, TakesAnExpectedRefusalAsMeant) {
    std::string text = changed({"", "\"pair/left.dat\"", "\"../left.dat\"", ""});
    text.replace(text.find("{\"a\": ["), 1,
                 R"({"left": ["refused", null, "target outside the client"], )");
    EXPECT_EQ(checkScenario(text, "a.json", hashesOf), std::vector<Mistake>());

    // A condition that nobody can read does not refuse.
    text.replace(text.find("%appver%>="), 10, "%appver%=>");
    text.replace(text.find("\"a\": [\"placed\", \"1.3.0.1600\"]"), 29,
                 R"("a": ["refused", null, "for another client version"])");
    ASSERT_EQ(checkScenario(text, "a.json", hashesOf).size(), 1U);
    EXPECT_EQ(checkScenario(text, "a.json", hashesOf)[0].code, "expression-operator");
}

TEST(ScenarioCheck, LosesNothingOnStrangeTexts) {
    for (const std::string& text :
         {std::string("[]"), std::string("null"),
          std::string("{\"phases\": [1, {}], \"client\": 3}"),
          std::string(
              "{\"platform\": {\"materials\": [[], {\"name\": 1}]}, \"client\": {\"held\": [{}]}}"),
          std::string(100000, '['), std::string("{\"a\": \"\xff\"}"), std::string()}) {
        EXPECT_FALSE(checkScenario(text, "a.json").empty()) << text.substr(0, 60);
    }
}
