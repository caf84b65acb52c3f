#include "check/plantedcases.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>

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
    "folders": ["update\\extras\\deep", "logs\\"],
    "held": [{"file": "a.dll", "by": "keeper.exe"}],
    "config": {"login": {"token": true}}
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
         "with": [{"name": "notes.txt"},
                  {"name": "temp\\notes.txt"}, {"name": "extras\\notes.txt"}]}},
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
     }},
    {"do": "run", "set": {"muteMode": 0},
     "upgrade": {"package": {"fails": true}},
     "faults": [{"on": "client", "fault": "in-use", "file": "xnbase.dll", "by": "keeper.exe"}],
     "ui": [{"set": {"login": "on"}}],
     "expect": {
       "contents": {"a.dll": "{a.fileMd5}"},
       "settings": {"KEY_OF_NOBODY": "{package.size}"}
     }},
    {"do": "run", "upgrade": {"package": null}}
  ],
  "upgrade": {
    "package": {"version": "1.4.0.1", "size": 9000,
      "files": [{"path": "ui.dll", "kind": "pe", "version": "1.4.0.1"}]}
  }
})json";

std::string changed(const Case& row) {
    std::string text = right;
    return text.replace(text.find(row.text), row.text.size(), row.by);
}

std::size_t lineOf(const Case& row) {
    const auto end = right.begin() + static_cast<std::ptrdiff_t>(right.find(row.text));
    return static_cast<std::size_t>(1 + std::count(right.begin(), end, '\n') + row.below);
}

std::optional<sandbox::check::Hashes> hashesOf(const std::string& /*material*/) {
    return sandbox::check::Hashes{std::string(32, 'a'), std::string(32, 'b')};
}

/// Knows two names that can be set.
std::string refusalOfSet(const nlohmann::json& change) {
    return change.contains("muteMode") || change.contains("login") ? "" : "not to be set";
}

std::vector<Case> allCases() {
    std::vector<Case> all;
    for (const auto& some : {formatCases(), clientCases(), conditionCases(), materialCases()}) {
        all.insert(all.end(), some.begin(), some.end());
    }
    return all;
}

class PlantedMistake : public testing::TestWithParam<Case> {};

} // namespace

TEST_P(PlantedMistake, IsTheOnlyOne) {
    const auto mistakes = checkScenario(changed(GetParam()), "a.json", hashesOf, refusalOfSet);
    for (const Mistake& mistake : mistakes) {
        EXPECT_EQ(mistake.code, GetParam().code) << mistake.text;
        EXPECT_EQ(mistake.line, lineOf(GetParam())) << mistake.text;
        EXPECT_EQ(mistake.file, "a.json");
    }
    EXPECT_EQ(mistakes.size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Check, PlantedMistake, testing::ValuesIn(allCases()),
                         [](const auto& row) { return row.param.name; });

TEST(PlantedMistake, IsDocumentedAndEachDocumentedOneIsPlanted) {
    // Those of folders of materials are planted beside; the last is told of what no check knows.
    std::set<std::string> planted{
        "cabinet-damaged",   "file-missing",    "file-shared",
        "parameter-kind",    "count-differs",   "dependent-unknown-module",
        "parameter-missing", "group-name-near", "scenario-refused"};
    for (const Case& row : allCases()) {
        planted.insert(row.code);
    }
    std::ifstream stream(DOCS "/authoring.md");
    std::set<std::string> documented;
    for (std::string line; std::getline(stream, line);) {
        const std::string codes =
            line.rfind("| `", 0) == 0 ? line.substr(0, line.find(" | ", 2)) : "";
        for (std::size_t at = 0; (at = codes.find('`', at)) != std::string::npos;) {
            const std::size_t end = codes.find('`', at + 1);
            documented.insert(codes.substr(at + 1, end - at - 1));
            at = end + 1;
        }
    }
    EXPECT_EQ(documented, planted);
}

TEST(ScenarioCheck, FindsNothingInARightOne) {
    EXPECT_EQ(checkScenario(right, "a.json", hashesOf, refusalOfSet), std::vector<Mistake>());
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

TEST(ScenarioCheck, RefusesATextThatGoesTooDeepOnTheLineWhereItDoes) {
    const std::string open(1000, '[');
    const struct {
        std::string text;
        std::size_t line; ///< 0 for one that is read
    } cases[] = {
        {"[\n" + open + "\n" + std::string(1000, ']') + "]", 2},
        {open + std::string(1000, ']'), 0},
        {"[\"" + open + "\\\"" + open + "\"]", 0}, // in a text
        {open + "\n" + std::string(100000, '{'), 2},
    };
    for (const auto& [text, line] : cases) {
        const auto mistakes = checkScenario(text, "a.json");
        ASSERT_EQ(mistakes.size(), 1U);
        EXPECT_EQ(mistakes[0].code, line == 0 ? "member-kind" : "syntax") << mistakes[0].text;
        EXPECT_EQ(mistakes[0].line, std::max<std::size_t>(line, 1));
    }
}

TEST(ScenarioCheck, LosesNothingOnStrangeTexts) {
    for (const std::string& text :
         {std::string("[]"), std::string("null"),
          std::string("{\"phases\": [1, {}], \"client\": 3}"),
          std::string(
              "{\"platform\": {\"materials\": [[], {\"name\": 1}]}, \"client\": {\"held\": [{}]}}"),
          std::string("{\"a\": \"\xff\"}"), std::string()}) {
        EXPECT_FALSE(checkScenario(text, "a.json").empty()) << text.substr(0, 60);
    }
}
