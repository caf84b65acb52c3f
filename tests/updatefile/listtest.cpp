#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "updatefile/updatefilelist.h"

namespace {

/// An entry as it is stored.
std::string entry(int type, const std::string& version = "0.0.0.0", const std::string& url = "",
                  const std::string& size = "0") {
    return R"({"fileMD5":"","fileSize":)" + size + R"(,"fileType":)" + std::to_string(type) +
           R"(,"fileURL":")" + url + R"(","fileVersion":")" + version + "\"}";
}

std::string sized(const std::string& size) {
    return entry(1000, "0.0.0.0", "", size) + "," + entry(1001);
}

TEST(UpdateFileList, ReadsWhatHasTheRightTypeFillsUpAndTakesWhatHasAUrl) {
    const std::string most = "9223372036854775807";
    const std::string offer = entry(1000, "2", "u");
    const struct {
        std::string stored, offered, result;
    } rows[] = {
        {"", "", sized("0")},
        {R"(null,7,{"fileType":1002},{"fileType":"1000"},{"fileType":4294968297})", "", sized("0")},
        {R"({"fileType":1001.9,"fileVersion":5,"fileMD5":{},"fileURL":null,"x":1})", "",
         entry(1001) + "," + entry(1000)},
        {R"({"fileType":1000,"fileSize":"12x"})", "", sized("12")},
        {R"({"fileType":1000,"fileSize":true})", "", sized("0")},
        {R"({"fileType":1000,"fileSize":1e30})", "", sized(most)},
        {R"({"fileType":1000,"fileSize":-1e30})", "", sized("-9223372036854775808")},
        {R"({"fileType":1000,"fileSize":18446744073709551615})", "", sized(most)},
        {"", entry(1000, "2", ""), sized("0")},
        {"", entry(1000, "1", "t") + "," + offer, entry(1001) + "," + offer},
        {offer, entry(1001, "3", "v"), offer + "," + entry(1001, "3", "v")},
    };
    for (const auto& [stored, offered, result] : rows) {
        XUpdateFileList list;
        list.fromStored(R"({"list":[)" + stored + "]}");
        const auto answer = std::make_shared<XUpdateFileList>();
        answer->fromResponse(R"({"data":{"list":[)" + offered + "]}}");
        list.merge(answer);
        EXPECT_EQ(list.toStored(), R"({"list":[)" + result + "]}") << stored << " " << offered;
    }
    for (const char* text : {"", "7", "{}", R"({"data":7,"list":7})", R"({"data":{"list":{}}})"}) {
        XUpdateFileList list;
        XUpdateFileList answer;
        list.fromStored(text);
        answer.fromResponse(text);
        EXPECT_EQ(list.toStored(), R"({"list":[)" + sized("0") + "]}") << text;
        EXPECT_EQ(answer.size(), 0U) << text << ": an answer is not filled up";
    }
    EXPECT_THROW(XUpdateFileList().fromStored("{"), nlohmann::json::exception);
    EXPECT_THROW(XUpdateFileList().fromResponse("<html>"), nlohmann::json::exception);
}

} // namespace
