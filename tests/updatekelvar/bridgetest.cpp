#include <gtest/gtest.h>

#include <google/protobuf/text_format.h>
#include <json/json.h>

#include "kelvar/api.pb.h"
#include "kelvar/types/extended_method/methods.pb.h"
#include "updatekelvar/bridgetest.pb.h"
#include "updatekelvar/fetch/xpbjson.h"

namespace {

using UpgradeRequest = kelvar::types::extended_method::GetUpgradePacket_Request;
using kelvar::types::extended_method::GetFullPacketDiff_Response;

template <class Message>
Message made(const std::string& text) {
    Message message;
    EXPECT_TRUE(google::protobuf::TextFormat::ParseFromString(text, &message)) << text;
    return message;
}

std::string json(const google::protobuf::Message& message, bool enumAsName = false) {
    std::string text;
    XPbJson().toJsonString(message, text, enumAsName);
    return text;
}

/// What a message holds after reading, in the library's text format.
template <class Message>
std::string read(const std::string& text, bool enumAsName = false) {
    Message message;
    EXPECT_TRUE(XPbJson().fromJsonString(text, &message, enumAsName)) << text;
    return message.ShortDebugString();
}

struct Row {
    const char* from;
    const char* to;
};

TEST(BridgeWrites, EverySingularFieldButDoubleAndGroup) {
    EXPECT_EQ(json(bridgetest::One()),
              R"({"a_bool":false,"a_bytes":"","a_enum":0,"a_fixed32":0,"a_fixed64":0,)"
              R"("a_float":0.0,"a_int32":0,"a_int64":0,"a_sfixed32":0,"a_sfixed64":0,)"
              R"("a_sint32":0,"a_sint64":0,"a_string":"","a_uint32":0,"a_uint64":0,)"
              R"("an_empty":null,"an_inner":{"colour":0,"text":""}})"
              "\n");
    const auto one = made<bridgetest::One>(
        R"(a_double: 1.5 a_float: 1.5 a_int32: -1 a_sint32: -2 a_sfixed32: -3 a_uint32: 4294967295
           a_fixed32: 5 a_int64: -5000000000 a_sint64: -7 a_sfixed64: -8
           a_uint64: 18446744073709551615 a_fixed64: 10 a_bool: true a_string: "\303\244\""
           a_bytes: "b" a_enum: RED AGroup {} an_inner { text: "t" colour: BLUE })");
    const std::string expected =
        R"({"a_bool":true,"a_bytes":"b","a_enum":1,"a_fixed32":5,"a_fixed64":10,)"
        R"("a_float":1.5,"a_int32":-1,"a_int64":-5000000000,"a_sfixed32":-3,"a_sfixed64":-8,)"
        R"("a_sint32":-2,"a_sint64":-7,"a_string":"\u00e4\"","a_uint32":4294967295,)"
        R"("a_uint64":18446744073709551615,"an_empty":null,)"
        R"("an_inner":{"colour":2,"text":"t"}})"
        "\n";
    EXPECT_EQ(json(one), expected);
    std::string named = expected; // the inner level stays with numbers
    named.replace(named.find(R"("a_enum":1)"), 10, R"("a_enum":"RED")");
    EXPECT_EQ(json(one, true), named);
}

TEST(BridgeWrites, ElementsAsObjectsKeyedByTheirField) {
    const Row rows[] = {
        {"", "null"},
        {"a_double: 1", R"({"a_double":[null]})"},
        {"a_float: 0.5", R"({"a_float":[{"a_float":0.5}]})"},
        {"a_int32: 0 a_int32: -1", R"({"a_int32":[{"a_int32":0},{"a_int32":-1}]})"},
        {"a_sint32: -1", R"({"a_sint32":[{"a_sint32":-1}]})"},
        {"a_sfixed32: -1", R"({"a_sfixed32":[{"a_sfixed32":-1}]})"},
        {"a_uint32: 4294967295", R"({"a_uint32":[{"a_uint32":4294967295}]})"},
        {"a_fixed32: 1", R"({"a_fixed32":[{"a_fixed32":1}]})"},
        {"a_int64: -5000000000", R"({"a_int64":[{"a_int64":-5000000000}]})"},
        {"a_sint64: -1", R"({"a_sint64":[{"a_sint64":-1}]})"},
        {"a_sfixed64: -1", R"({"a_sfixed64":[{"a_sfixed64":-1}]})"},
        {"a_uint64: 5000000000", R"({"a_uint64":[{"a_uint64":5000000000}]})"},
        {"a_fixed64: 1", R"({"a_fixed64":[{"a_fixed64":1}]})"},
        {"a_bool: false", R"({"a_bool":[{"a_bool":false}]})"},
        {"a_string: 'a' a_string: ''", R"({"a_string":[{"a_string":"a"},{"a_string":""}]})"},
        {"a_bytes: 'b'", R"({"a_bytes":[{"a_bytes":"b"}]})"},
        {"a_enum: NONE a_enum: BLUE", R"({"a_enum":[0,2]})"},
        {"AGroup {}", R"({"agroup":[null]})"},
        {"an_inner {} an_inner { colour: RED }", R"({"an_inner":[null,{"colour":1,"text":""}]})"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(json(made<bridgetest::Many>(row.from)), std::string(row.to) + "\n") << row.from;
    }
    EXPECT_EQ(json(made<bridgetest::Many>("a_enum: BLUE"), true), "{\"a_enum\":[\"BLUE\"]}\n");
}

TEST(BridgeWrites, MapAsObjectInTheUpgradeRequestOnly) {
    UpgradeRequest request;
    request.set_channel_code("c");
    const std::string head = R"({"channel_code":"c","channel_unique_code":"","customer":)"
                             R"({"asset_id":{"id":0,"oid":0},"client":""},"need_min_ver":false,)"
                             R"("params":)";
    const std::string tail = R"(,"species_unique_code":"","version":""})"
                             "\n";
    EXPECT_EQ(json(request), head + "null" + tail);
    (*request.mutable_params())["kelvar_test"] = std::string("true\0cut", 8);
    (*request.mutable_params())[""] = "";
    EXPECT_EQ(json(request), head + R"({"":"","kelvar_test":"true"})" + tail);

    kelvar::types::material::Meta meta;
    (*meta.mutable_extends())["exec"] = "x";
    EXPECT_NE(json(meta).find(R"("extends":[{"key":"exec","value":"x"}])"), std::string::npos);
}

TEST(BridgeReads, SingularFieldsByTheirTests) {
    const Row rows[] = {
        {R"({"a_double":1})", "a_double: 1"},
        {R"({"a_double":"1"})", ""},
        {R"({"a_float":1.5})", "a_float: 1.5"},
        {R"({"a_float":true})", ""},
        {R"({"a_int32":-5})", "a_int32: -5"},
        {R"({"a_int32":2.0})", "a_int32: 2"},
        {R"({"a_int32":2.5})", ""},
        {R"({"a_int32":2147483648})", ""},
        {R"({"a_int32":"5"})", ""},
        {R"({"a_sint32":-5,"a_sfixed32":6})", "a_sint32: -5 a_sfixed32: 6"},
        {R"({"a_uint32":4294967295,"a_fixed32":1})", "a_uint32: 4294967295 a_fixed32: 1"},
        {R"({"a_uint32":-1})", ""},
        {R"({"a_int64":12})", "a_int64: 12"},
        {R"({"a_int64":5000000000})", ""}, // the 32-bit test
        {R"({"a_int64":"12"})", ""},
        {R"({"a_sint64":-1,"a_sfixed64":2147483647})", "a_sint64: -1 a_sfixed64: 2147483647"},
        {R"({"a_uint64":4294967295,"a_fixed64":4294967296})", "a_uint64: 4294967295"},
        {R"({"a_bool":true})", "a_bool: true"},
        {R"({"a_bool":false})", "a_bool: false"},
        {R"({"a_bool":0})", "a_bool: true"}, // the test's result is stored
        {R"({"a_bool":"true"})", "a_bool: true"},
        {R"({"a_bool":"false"})", "a_bool: false"},
        {R"({"a_bool":"maybe"})", ""},
        {R"({"a_bool":null})", ""},
        {R"({"a_string":"t"})", "a_string: \"t\""},
        {R"({"a_string":5})", ""},
        {R"({"a_bytes":"YQ=="})", "a_bytes: \"YQ==\""},
        {R"({"a_enum":1})", ""},
        {R"({"a_enum":"RED"})", ""},
        {R"({"agroup":{}})", ""},
        {R"({"an_inner":{"text":"t","colour":1}})", "an_inner { text: \"t\" }"},
        {R"({"an_inner":[]})", ""},
        {R"({"unknown":1,"a_int32":1})", "a_int32: 1"},
        {"{}", ""},
        {"[]", ""}, // a root with no members
    };
    for (const Row& row : rows) {
        EXPECT_EQ(read<bridgetest::One>(row.from), row.to) << row.from;
    }
}

TEST(BridgeReads, ElementsThatPassAndDropsTheOthers) {
    const Row rows[] = {
        {R"({"a_double":[1.5,"x",2]})", "a_double: 1.5 a_double: 2"},
        {R"({"a_float":[true,1]})", "a_float: 1"},
        {R"({"a_int32":[1,"x",2147483648,-2]})", "a_int32: 1 a_int32: -2"},
        {R"({"a_sint32":[1],"a_sfixed32":[null,2]})", "a_sint32: 1 a_sfixed32: 2"},
        {R"({"a_uint32":[-1,3],"a_fixed32":[4]})", "a_uint32: 3 a_fixed32: 4"},
        {R"({"a_int64":[5000000000,5],"a_sint64":[6],"a_sfixed64":[7]})",
         "a_int64: 5 a_sint64: 6 a_sfixed64: 7"},
        {R"({"a_uint64":[5000000000,8],"a_fixed64":[9]})", "a_uint64: 8 a_fixed64: 9"},
        {R"({"a_bool":[true,false,0,3,"true","no","false"]})",
         "a_bool: false a_bool: true a_bool: true a_bool: false"},
        {R"({"a_string":["a",1,"b"],"a_bytes":["c"]})",
         "a_string: \"a\" a_string: \"b\" a_bytes: \"c\""},
        {R"({"a_string":[{"a_string":"a"}]})", ""}, // the writer's own shape
        {R"({"a_enum":[2,7,"RED",{},1]})", "a_enum: BLUE a_enum: RED"},
        {R"({"agroup":[{}]})", ""},
        {R"({"an_inner":[1,{"text":"t"},{}]})", "an_inner { text: \"t\" } an_inner { }"},
        {R"({"a_float":[1],"a_int32":null,"a_string":["a"]})", "a_float: 1"}, // ends the walk
    };
    for (const Row& row : rows) {
        EXPECT_EQ(read<bridgetest::Many>(row.from), row.to) << row.from;
    }
    EXPECT_EQ(read<bridgetest::Many>(R"({"a_enum":["BLUE","GREEN",[],1]})", true), "a_enum: BLUE");
}

TEST(BridgeReads, MapsByTheirFixedKeysAndEndsTheMessage) {
    const Row materials[] = {
        {R"({"md5":"m","extends":{"osver":"o","other":"x","exec":5},"create_time":{"seconds":3}})",
         R"(md5: "m" extends { key: "osver" value: "o" })"},
        {R"({"extends":[{"key":"k","value":"v"},1],"create_time":{"seconds":3}})",
         R"(extends { key: "k" value: "v" } create_time { seconds: 3 })"},
        {R"({"extends":"x","create_time":{"seconds":3}})", ""},
        {R"({"file_type":1,"execute_type":2,"create_time":"2020","update_time":{"seconds":4}})",
         "update_time { seconds: 4 }"},
    };
    for (const Row& row : materials) {
        EXPECT_EQ(read<kelvar::types::material::Meta>(row.from), row.to) << row.from;
    }
    EXPECT_EQ(read<kelvar::types::packet::Meta>(
                  R"({"change_log":"l","extends":{"restart_tray":"1","exec":"x"},"md5":"m"})"),
              R"(extends { key: "restart_tray" value: "1" } change_log: "l")");
    EXPECT_EQ(read<kelvar::BatchGetMaterialMeta_Response>(R"({"status":null,"metas":[{}]})"), "");
    EXPECT_EQ(read<kelvar::BatchGetMaterialMeta_Response>(R"({"metas":[1,{"meta":{}}]})"),
              "metas { meta { } }");

    kelvar::types::material::Meta all;
    (*all.mutable_extends())["exec"] = "before"; // an entry that is there is not replaced
    XPbJson().fromJsonString(
        R"({"extends":{"osver":"1","file_path":"2","file_md5":"3","check_sys":"4",)"
        R"("check_app":"5","non_cab":"6","dependent":"7","exec":"8"}})",
        &all, false);
    EXPECT_EQ(all.extends_size(), 8);
    EXPECT_EQ(all.extends().at("exec"), "before");
}

TEST(BridgeReads, OnlyStrictJson) {
    for (const char* text : {"", "5", "\"x\"", "{", "// c\n{}", "{\"a\":1,}", "not json"}) {
        bridgetest::One one;
        one.set_a_int32(7);
        EXPECT_FALSE(XPbJson().fromJsonString(text, &one, false)) << text;
        EXPECT_EQ(one.ShortDebugString(), "a_int32: 7") << text;
    }
}

/// A difference within a difference, and so on, closed properly.
std::string nested(int levels) {
    std::string text = R"({"full_packet_diff":)";
    std::string closing = "{}";
    for (int i = 0; i < levels; ++i) {
        text += R"({"rely_channels":[)";
        closing += "]}";
    }
    return text + closing + "}";
}

TEST(BridgeReads, DeepNestingUpToTheParsersLimit) {
    GetFullPacketDiff_Response response;
    EXPECT_TRUE(XPbJson().fromJsonString(nested(400), &response, false));
    EXPECT_EQ(response.full_packet_diff().rely_channels_size(), 1);
    EXPECT_THROW(XPbJson().fromJsonString(nested(4000), &response, false), Json::Exception);
}

} // namespace
