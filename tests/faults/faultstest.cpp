#include <gtest/gtest.h>

#include "sandbox/faults/fault.h"
#include "sandbox/faults/faultlog.h"
#include "sandbox/server/serverfaults.h"

// What a scenario may say of faults, what it is told when it may not, and which of them a run has
// met.

namespace {

using nlohmann::json;
using sandbox::Fault;

const std::set<std::string> materials{"core", "m03"};

/// One fault, or several with commas between.
std::vector<Fault> read(const std::string& faults) {
    return sandbox::readFaults(json::parse("[" + faults + "]"), materials);
}

std::string refusalOf(const std::string& one) {
    try {
        read(one);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "none";
}

TEST(Faults, TakeTheirOwnExamples) {
    for (const sandbox::FaultKind& kind : sandbox::faultKinds()) {
        EXPECT_EQ(sandbox::findFaultKind(kind.name), &kind) << "told twice";
        if ((kind.places & sandbox::placeStartState) == 0) {
            const std::vector<Fault> faults = read(kind.example);
            ASSERT_EQ(faults.size(), 1U);
            EXPECT_EQ(faults[0].name, kind.name);
            for (const sandbox::Parameter& parameter : kind.parameters) {
                const std::string open = std::string("{") + parameter.name + "}";
                EXPECT_EQ(faults[0].words().find(open), std::string::npos) << kind.name;
            }
            EXPECT_EQ(read(sandbox::toJson(faults)[0].dump())[0].record(), faults[0].record());
        }
    }
}

TEST(Faults, AreToldInWords) {
    const struct {
        const char* fault;
        const char* title;
        const char* words;
    } rows[] = {
        {R"({"on":"GetPacketMeta","attempt":2,"fault":"status","status":503})",
         "status on GetPacketMeta, attempt 2", "status 503 in place of the answer"},
        {R"({"on":"core","fault":"cut","byte":7})", "cut on core",
         "the body ends at byte 7, its full length announced: true"},
        {R"({"on":"core","fault":"other-length"})", "other-length on core",
         "a file that is -1 bytes longer"},
        {R"({"on":"modules","fault":"mute","from":2,"until":4})",
         "mute on modules, from tick 2, until tick 4", "mute mode"},
        {R"({"on":"modules","fault":"window"})", "window on modules",
         "the window XNSETTINGUI.INSTANCE is open"},
    };
    for (const auto& row : rows) {
        const Fault fault = read(row.fault).at(0);
        EXPECT_EQ(fault.title(), row.title);
        EXPECT_EQ(fault.words(), row.words);
    }
}

TEST(Faults, AreRefusedWithWhatIsKnown) {
    const struct {
        const char* fault;
        const char* told;
    } rows[] = {
        {R"({"on":"core","fault":"statuss"})",
         "no fault \"statuss\"; known are status, silent, re"},
        {R"({"on":"m04","fault":"cut","byte":1})",
         "nothing is called \"m04\"; known are GetUpgradePacket, "},
        {R"({"on":"GetPacketMeta","fault":"meta-count","count":1})",
         "\"meta-count\" cannot stand on GetPacketMeta; there can stand status, "},
        {R"({"on":"core","fault":"mute"})", "\"mute\" cannot stand on core"},
        {R"({"on":"core","fault":"left-out"})", "\"left-out\" cannot stand on core"},
        {R"({"fault":"mute"})", "each has a text \"on\""},
        {R"(["core"])", "each has a text \"on\""},
        {R"({"on":"core","fault":"status"})", "\"status\" is missing; it is HTTP status"},
        {R"({"on":"core","fault":"status","status":"503"})", "of the wrong kind: \"503\""},
        {R"({"on":"core","fault":"status","status":99})", "\"status\" is 200 to 599, not 99: HTTP"},
        {R"({"on":"core","fault":"cut","byte":-1})", "\"byte\" is 0 to 2147483647, not -1"},
        {R"({"on":"core","fault":"cut","byte":18446744073709551615})",
         "not 18446744073709551615: bytes of the body"},
        {R"({"on":"core","fault":"chunked","size":0})", "\"size\" is 1 to "},
        {R"({"on":"core","fault":"slow","ms":9999999})", "\"ms\" is 0 to 3600000, not 9999999"},
        {R"({"on":"core","fault":"other-length","by":100000001})", " to 100000000, not 100000001"},
        {R"({"on":"GetPacketMeta","fault":"deep","levels":1000001})", "is 1 to 1000000, not"},
        {R"({"on":"BatchGetMaterialMeta","fault":"meta-count","count":100001})", "0 to 100000,"},
        {R"({"on":"modules","fault":"mute","from":3,"until":3})",
         "\"mute\" on modules ends ahead of its begin: \"until\" is 3"},
        {R"({"on":"core","fault":"empty"},{"on":"core","attempt":2,"fault":"cut","byte":1})",
         "cut on core, attempt 2 is never met: empty on core stands ahead of it"},
        {R"({"on":"core","attempt":2,"fault":"empty"},{"on":"core","attempt":2,"fault":"empty"})",
         "empty on core, attempt 2 is never met"},
        {R"({"on":"modules","fault":"mute"},{"on":"modules","fault":"mute","from":0})",
         "mute on modules is never met"},
        {R"({"on":"core","fault":"refused","at":1})", "\"refused\" takes no \"at\""},
        {R"({"on":"core","fault":"refused","attempt":0})", "no number of a request"},
        {R"({"on":"modules","fault":"mute","attempt":1})", "no number of a request"},
        {R"({"on":"GetPacketMeta","fault":"extends","as":"beside"})", "not beside"},
    };
    for (const auto& row : rows) {
        EXPECT_NE(refusalOf(row.fault).find(row.told), std::string::npos) << row.fault << "\n"
                                                                          << refusalOf(row.fault);
    }
}

TEST(Faults, MayShareAPlace) {
    EXPECT_EQ(refusalOf(R"({"on":"core","attempt":1,"fault":"empty"},{"on":"core","fault":"empty"},
                           {"on":"m03","fault":"empty"},
                           {"on":"GetPacketMeta","fault":"drop"},
                           {"on":"GetPacketMeta","fault":"empty"},
                           {"on":"modules","fault":"mute","until":2},
                           {"on":"modules","fault":"mute","from":3}
                          )"),
              "none");
}

TEST(Faults, AreToldApartInTheirLog) {
    const char* const mutes = R"({"on":"modules","fault":"mute","until":2},
                                 {"on":"modules","fault":"mute","from":3,"until":5})";
    const char* const drops = R"({"on":"GetPacketMeta","attempt":1,"fault":"drop"},
                                 {"on":"GetPacketMeta","attempt":2,"fault":"drop"})";
    const struct {
        const char* faults;
        std::size_t logged; ///< place in the list
        std::size_t attempt;
        std::size_t phase;
        const char* missed; ///< places in the list
    } rows[] = {
        {mutes, 0, 1, 1, "1"}, {mutes, 1, 1, 1, "0"}, {mutes, 1, 1, 2, "01"},
        {drops, 0, 1, 1, "1"}, {drops, 1, 2, 1, "0"},
    };
    for (const auto& row : rows) {
        const std::vector<Fault> faults = read(row.faults);
        json line = faults.at(row.logged).record();
        line.update({{"phase", row.phase}, {"attempt", row.attempt}, {"at", 7}});
        std::string missed;
        for (std::size_t i = 0; i < faults.size(); ++i) {
            missed += sandbox::hasTakenEffect({line}, 1, faults[i]) ? "" : std::to_string(i);
        }
        EXPECT_EQ(missed, row.missed) << row.faults << line;
    }
}

using Titles = std::vector<std::string>;

TEST(ServerFaults, AreMetOneByOne) {
    sandbox::ServerFaults faults;
    Titles met;
    const auto take = [&](const Fault& fault, std::size_t attempt) {
        met.push_back(fault.words() + " at " + std::to_string(attempt));
    };
    faults.beginRun({read(R"({"on":"core","attempt":1,"fault":"empty"},
                            {"on":"core","attempt":3,"fault":"cut","byte":1},
                            {"on":"core","attempt":4,"fault":"cut","byte":2})"),
                     take});
    for (int request = 0; request < 3; ++request) {
        if (const auto fault = faults.next("core")) {
            faults.tookEffect(*fault);
        }
    }
    EXPECT_FALSE(faults.next("m03"));
    EXPECT_EQ(met, (Titles{"an empty body at 1",
                           "the body ends at byte 1, its full length announced: true at 3"}));
    EXPECT_EQ(faults.missed(), Titles{"cut on core, attempt 4"});
}

TEST(ServerFaults, OfEndedRunsCountNoMore) {
    sandbox::ServerFaults faults;
    faults.beginRun({read(R"({"on":"m03","fault":"empty"},{"on":"core","fault":"empty"})"), {}});
    const auto late = faults.next("core");
    ASSERT_TRUE(late);
    faults.beginRun({read(R"({"on":"core","fault":"empty"})"), {}});
    faults.tookEffect(*late);
    EXPECT_EQ(faults.missed(), Titles{"empty on core"});
}

} // namespace
