#include "doctor/plantedcases.h"

#include <gtest/gtest.h>
#include <set>

namespace {

using sandbox::doctor::Code;
using sandbox::doctor::Finding;

std::vector<Case> allCases() {
    std::vector<Case> all;
    for (const auto& some : {fileCases(), storeCases(), restartCases()}) {
        all.insert(all.end(), some.begin(), some.end());
    }
    return all;
}

class Planted : public testing::TestWithParam<Case> {};

} // namespace

TEST_P(Planted, IsTheOnlyFinding) {
    HealthyClient client;
    GetParam().plant(client);
    const auto report = client.examine();
    for (const Finding& finding : report.findings) {
        EXPECT_EQ(finding.code, GetParam().code) << finding.what;
        EXPECT_NE(finding.file.find(GetParam().file), std::string::npos) << finding.file;
        EXPECT_NE(finding.what.find(finding.file), std::string::npos) << finding.what;
    }
    EXPECT_EQ(report.findings.size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Doctor, Planted, testing::ValuesIn(allCases()),
                         [](const auto& row) { return row.param.name; });

TEST(Planted, CoverEveryKindAndEachIsDocumented) {
    // These need another process and another user, and are tested with them.
    std::set<Code> planted{Code::fileInUse, Code::unreadableFile};
    for (const Case& row : allCases()) {
        planted.insert(row.code);
    }
    EXPECT_EQ(planted.size(), sandbox::doctor::allKinds().size());
    std::ifstream stream(DOCS "/doctor.md");
    const std::string document(std::istreambuf_iterator<char>(stream), {});
    for (const auto& kind : sandbox::doctor::allKinds()) {
        const std::string row =
            std::string("| `") + kind.name + "` | " +
            (kind.severity == sandbox::doctor::Severity::fault ? "fault" : "notice") + " | " +
            kind.means + " | " + kind.remedy + " |";
        EXPECT_NE(document.find(row), std::string::npos) << row;
    }
}
