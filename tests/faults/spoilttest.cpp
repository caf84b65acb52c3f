#include <gtest/gtest.h>

#include "sandbox/server/bodyfaults.h"

// What a fault makes of the right answer.

namespace {

using nlohmann::json;

const std::string metas =
    R"({"metas":[{"meta":{"a":1,"extends":{"exec":"x"},"z":"t"}},{"meta":{"a":2}}]})";

struct Row {
    const char* fault; ///< members beside "on"
    std::string right;
    std::string spoilt; ///< "none": it cannot come about
};

TEST(SpoiltAnswers, AreWhatTheirFaultSays) {
    const Row rows[] = {
        {R"("fault":"status","status":204)", "abc", "not now"},
        {R"("fault":"cut","byte":2)", "abc", "abc"},
        {R"("fault":"cut","byte":3)", "abc", "none"},
        {R"("fault":"broken")", "", "none"},
        {R"("fault":"empty")", "abc", ""},
        {R"("fault":"empty")", "", "none"},
        {R"("fault":"body","body":"{}")", metas, "{}"},
        {R"("fault":"deep","levels":3)", metas, "[[[]]]"},
        {R"("fault":"other-shape")", R"({"a":[{"b":"xy"}],"c":7,"d":null})",
         R"({"a":{"0":[2]},"c":"7","d":"null"})"},
        {R"("fault":"not-utf8")", R"({"a":"x","b":1})", "{\"a\":\"x\xff\",\"b\":1}"},
        {R"("fault":"not-utf8")", R"({"b":1})", "none"},
        {R"("fault":"big-numbers")", R"({"a":[1]})", R"({"a":[5000000001]})"},
        {R"("fault":"big-numbers")", R"({"a":"1"})", "none"},
        {R"("fault":"meta-count","count":1)", metas,
         R"({"metas":[{"meta":{"a":1,"extends":{"exec":"x"},"z":"t"}}]})"},
        {R"("fault":"meta-count","count":2)", metas, "none"},
        {R"("fault":"meta-count","count":1)", R"({"metas":[]})", R"({"metas":[{}]})"},
        {R"("fault":"extends","as":"ahead")", metas,
         R"({"metas":[{"meta":{"extends":{"exec":"x"},"a":1,"z":"t"}},{"meta":{"a":2}}]})"},
        {R"("fault":"extends","as":"behind")", metas,
         R"({"metas":[{"meta":{"a":1,"z":"t","extends":{"exec":"x"}}},{"meta":{"a":2}}]})"},
        {R"("fault":"extends","as":"null")", metas,
         R"({"metas":[{"meta":{"a":1,"z":"t","extends":null}},{"meta":{"a":2}}]})"},
        {R"("fault":"other-length","by":-2)", "abc", "a"},
        {R"("fault":"other-length","by":-9)", "abc", ""},
        {R"("fault":"other-length","by":2)", "abc", "abcUU"},
    };
    for (const Row& row : rows) {
        const std::string members = row.fault;
        const bool isOfFile = members.find("other-length") != std::string::npos;
        const std::string on = isOfFile ? "core" : "BatchGetMaterialMeta";
        json told = json::parse("{" + members + "}");
        told["on"] = on;
        const auto fault = sandbox::readFaults(json::array({told}), {"core"});
        const auto answer = sandbox::spoilt(fault.at(0), {200, "text", row.right});
        EXPECT_EQ(answer ? answer->body : "none", row.spoilt) << row.fault << " of " << row.right;
    }
}

} // namespace
