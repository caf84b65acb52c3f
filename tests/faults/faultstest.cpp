#include <gtest/gtest.h>

#include "sandbox/faults/fault.h"

// What a scenario may say of faults, and what it is told when it may not.

namespace {

using nlohmann::json;
using sandbox::Fault;

const std::set<std::string> materials{"core", "m03"};

std::vector<Fault> read(const std::string& one) {
    return sandbox::readFaults(json::array({json::parse(one)}), materials);
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
        {R"({"on":"core","fault":"status","status":99})", "no status of an answer: 99"},
        {R"({"on":"core","fault":"cut","byte":-1})", "\"byte\" is below 0"},
        {R"({"on":"core","fault":"chunked","size":0})", "\"size\" is 0"},
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

} // namespace
