#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

#include "platform/temporaryfolder.h"
#include "sandbox/check/newscenario.h"
#include "sandbox/check/scenariocheck.h"

// What is written anew, and what stands in the repository, is as it should be.

namespace {

namespace fs = std::filesystem;
using sandbox::check::checkScenario;
using sandbox::check::Mistake;
using sandbox::check::newParts;
using sandbox::check::writeNewScenario;

std::vector<std::string> mistakesIn(const fs::path& file) {
    std::ifstream stream(file);
    const std::string text(std::istreambuf_iterator<char>(stream), {});
    std::vector<std::string> codes;
    for (const Mistake& mistake : checkScenario(text, file.filename().string())) {
        codes.push_back(mistake.file + ": " + mistake.code);
    }
    return codes;
}

} // namespace

TEST(NewScenario, IsWithoutMistakesAndTellsWhatItsPartsAre) {
    const TemporaryFolder folder;
    std::set<std::string> wanted;
    std::uintmax_t size = 0;
    for (const std::string& part : newParts()) {
        wanted.insert(part);
        const fs::path file = folder.onDisk(part + ".json");
        writeNewScenario(file, wanted);
        EXPECT_EQ(mistakesIn(file), std::vector<std::string>()) << part;
        EXPECT_GT(fs::file_size(file), size) << part;
        size = fs::file_size(file);
    }
}

TEST(NewScenario, LeavesAFileThatIsThereAlone) {
    const TemporaryFolder folder;
    folder.write("mine.json", std::string("mine"));
    folder.write("other.json.new", std::string("somebody's"));
    writeNewScenario(folder.onDisk("other.json"), {});
    EXPECT_EQ(folder.read("other.json.new"), "somebody's");
    EXPECT_THROW(writeNewScenario(folder.onDisk("mine.json"), {}), std::runtime_error);
    EXPECT_EQ(folder.read("mine.json"), "mine");
    EXPECT_THROW(writeNewScenario(folder.onDisk("third.json"), {"cabinets"}), std::runtime_error);
    EXPECT_THROW(writeNewScenario(folder.onDisk("no/third.json"), {}), std::runtime_error);
    EXPECT_EQ(folder.entryCount(), 3U);
}

TEST(Scenarios, HoldNoMistakeButThoseTheyAreAbout) {
    std::vector<std::string> found;
    for (const auto& entry : fs::directory_iterator(SCENARIOS)) {
        if (entry.path().extension() == ".json") {
            const auto mistakes = mistakesIn(entry.path());
            found.insert(found.end(), mistakes.begin(), mistakes.end());
        }
    }
    std::sort(found.begin(), found.end());
    EXPECT_EQ(found, std::vector<std::string>{"group-refused.json: group-of-one"});
}
