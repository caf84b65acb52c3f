#include <algorithm>
#include <atomic>
#include <gtest/gtest.h>
#include <set>
#include <thread>

#include "e2e/faultspots.h"

// Every request and every transfer against every fault of a server. A cell is a run that meets
// the fault and a run that does not: after the first one each file of the client is the one that
// it was or the one on offer, after the second one all that is on offer is in place.

namespace {

namespace fs = std::filesystem;
using namespace e2e;

struct Variant {
    const char* name;
    const char* fault;    ///< members beside "on"
    unsigned of;          ///< kinds that it makes sense for
    bool inBrief = false; ///< under Wine and with sanitizers, where a cell takes long
};

constexpr Variant variants[] = {
    {"Status204", R"("fault":"status","status":204)", all},
    {"Status302", R"("fault":"status","status":302)", all},
    {"Status403", R"("fault":"status","status":403)", all},
    {"Status404", R"("fault":"status","status":404)", all},
    {"Status429", R"("fault":"status","status":429)", all},
    {"Status500", R"("fault":"status","status":500)", all},
    {"Status503", R"("fault":"status","status":503)", all, true},
    {"Silent", R"("fault":"silent")", answers},
    {"SilentForAWhile", R"("fault":"silent","ms":30)", file},
    {"Refused", R"("fault":"refused")", all},
    {"Broken", R"("fault":"broken","byte":20)", all, true},
    {"Cut", R"("fault":"cut","byte":20)", all},
    {"CutUnannounced", R"("fault":"cut","byte":20,"announced":false)", all},
    {"Chunked", R"("fault":"chunked")", answers},
    {"FileInChunks", R"("fault":"chunked","size":7000)", file},
    {"Slow", R"("fault":"slow")", answers},
    {"SlowFile", R"("fault":"slow","size":10000,"ms":1)", file},
    {"Empty", R"("fault":"empty")", all},
    {"NotJson", R"("fault":"not-json")", answers, true},
    {"OtherShape", R"("fault":"other-shape")", answers},
    {"Deep", R"("fault":"deep")", answers},
    {"NotUtf8", R"("fault":"not-utf8")", answers},
    {"BigNumbers", R"("fault":"big-numbers")", numbers},
    {"FewerMetas", R"("fault":"meta-count","count":1)", metas},
    {"MoreMetas", R"("fault":"meta-count","count":3)", metas},
    {"ExtendsAhead", R"("fault":"extends","as":"ahead")", metas | packetMeta},
    {"ExtendsBehind", R"("fault":"extends","as":"behind")", metas}, // that of a packet is so
    {"ExtendsNull", R"("fault":"extends","as":"null")", metas | packetMeta},
    {"OtherBytes", R"("fault":"other-bytes")", file, true},
    {"Shorter", R"("fault":"other-length","by":-1)", file},
    {"Longer", R"("fault":"other-length","by":1000)", file},
};

using Names = std::set<std::string>;

/// The upgrade server's answers are read by a parser whose error leaves the step, as it has to;
/// what caught it in the client's place is told as a failure.
bool isParseError(const Spot& spot, const std::string& variant) {
    static const Names texts{"NotJson", "CutUnannounced", "NotUtf8"};
    const bool isEmptyPackage = variant == "Empty" && std::string(spot.on) == "packageCheck";
    return (spot.kinds & check) != 0 && (texts.count(variant) > 0 || isEmptyPackage);
}

/// The file channel puts in place what a transfer brings to its end, whatever it is, as it has
/// to: the next check finds that it is not the announced one.
bool isPlacedUnseen(const Spot& spot, const std::string& variant) {
    static const Names others{"CutUnannounced", "Empty", "OtherBytes", "Shorter", "Longer"};
    return std::string(spot.on) == "patchlib0.dat" &&
           (others.count(variant) > 0 || variant.rfind("Status", 0) == 0);
}

/// One fault in a folder of its own.
class Cell {
public:
    Cell(const Spot& tested, const Variant& with, const fs::path& in)
        : spot(tested), variant(with), folder(in / with.name) {}

    /// What came of it is recorded with the test, for those who show the whole matrix.
    void play() const {
        fs::create_directory(folder);
        std::ofstream(folder / "bystander") << "as it was";
        const std::string wrong = whatIsWrong();
        EXPECT_EQ(wrong, "") << spot.on << " " << variant.name;
        testing::Test::RecordProperty(variant.name, wrong.empty() ? outcome() : "FAULT");
        if (wrong.empty()) {
            fs::remove_all(folder);
        }
    }

private:
    std::string whatIsWrong() const {
        if (runScenario(written(), folder) != 0) {
            return "the run is not as expected\n" + textOf(folder / "output");
        }
        if (!isLogged()) {
            return "the fault did not take effect";
        }
        if (explained() != faultsOf(folder).at(0).at("words")) {
            return "explained as " + explained();
        }
        if (others() != Names{"bystander", "explained", "output", "scenario.json"} ||
            textOf(folder / "bystander") != "as it was") {
            return "something beside the run has changed";
        }
        return "";
    }

    const char* outcome() const {
        return isParseError(spot, variant.name)     ? "throws"
               : isPlacedUnseen(spot, variant.name) ? "unseen"
                                                    : "held";
    }

    Json fault() const {
        return Json::parse(std::string(R"({"on":")") + spot.on + "\"," + variant.fault + "}");
    }

    Json written() const {
        Json scenario = spot.cell();
        scenario["client"]["config"]["httpTimeoutMs"] = 3000;
        Json& faulty = scenario["phases"][0];
        faulty["title"] = variant.name;
        faulty["faults"] = Json::array({fault()});
        faulty["expect"]["client"] = "either";
        if (isParseError(spot, variant.name)) {
            faulty["expect"]["failures"] = Json::array({"parse error"});
        }
        if (isPlacedUnseen(spot, variant.name)) {
            faulty["expect"]["anything"] = Json::array({"patchlib0.dat"});
        }
        scenario["phases"][1]["expect"]["client"] = "complete";
        return scenario;
    }

    bool isLogged() const {
        const auto lines = faultsOf(folder);
        return std::any_of(lines.begin(), lines.end(), [this](const Json& line) {
            return line.at("on") == spot.on && line.at("fault") == fault().at("fault") &&
                   line.at("phase") == 1 && line.at("attempt") == 1 && line.contains("words");
        });
    }

    /// What "explain" says was done to the question, the material or the other channel's part.
    std::string explained() const {
        // 1 where no run of the Kelvar channel was there to be told.
        const int status =
            callXsandbox({"explain", "--all", "--json", "--folder", "run"}, folder, "explained");
        if (status != 0 && status != 1) {
            return "exit status " + std::to_string(status);
        }
        const Json told = Json::parse(textOf(folder / "explained"));
        for (const Json& run : told.at("runs")) {
            for (const char* const list : {"questions", "materials"}) {
                for (const Json& entry : run.at(list)) {
                    if (entry.at("name") == spot.on) {
                        return entry.at("fault").is_null() ? "" : entry.at("fault");
                    }
                }
            }
        }
        const std::string said = told.at("faults").at(0);
        const std::string on = std::string(spot.on) + ": ";
        return said.rfind(on, 0) == 0 ? said.substr(on.size()) : said;
    }

    /// What lies beside the run.
    Names others() const {
        Names names;
        for (const auto& entry : fs::directory_iterator(folder)) {
            names.insert(entry.path().filename().string());
        }
        names.erase("run");
        return names;
    }

    const Spot& spot;
    const Variant& variant;
    fs::path folder;
};

class FaultMatrix : public testing::TestWithParam<Spot> {
protected:
    static constexpr std::size_t atOnce = 4; // a cell waits more than it works

    void SetUp() override {
        folder = newFolder();
        ASSERT_FALSE(folder.empty());
        for (const Variant& variant : variants) {
            if ((variant.of & GetParam().kinds) != 0 && (isWhole() || variant.inBrief)) {
                cells.emplace_back(GetParam(), variant, folder);
            }
        }
    }

    void TearDown() override {
        if (!HasFailure()) {
            fs::remove_all(folder);
        }
    }

    static bool isWhole() {
#ifdef FAULTS_IN_BRIEF
        return false;
#else
        return !clientbuild::isWindows;
#endif
    }

    void playAll() {
        std::atomic<std::size_t> next{0};
        std::vector<std::thread> threads;
        for (std::size_t i = 0; i < atOnce; ++i) {
            threads.emplace_back([&] {
                for (std::size_t at = next++; at < cells.size(); at = next++) {
                    cells[at].play();
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }

    fs::path folder;
    std::vector<Cell> cells;
};

TEST_P(FaultMatrix, LeavesTheClientAsItWasOrComplete) {
    ASSERT_FALSE(cells.empty());
    playAll();
}

INSTANTIATE_TEST_SUITE_P(Faults, FaultMatrix, testing::ValuesIn(spots), [](const auto& tested) {
    const std::string name = tested.param.on;
    return name.substr(0, name.find('.')); // a test's name has letters and digits only
});

} // namespace
