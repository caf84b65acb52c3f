#include <gtest/gtest.h>

#include <google/protobuf/descriptor.h>
#include <google/protobuf/text_format.h>

#include "kelvar/api.pb.h"
#include "kelvar/types/extended_method/methods.pb.h"
#include "updatekelvar/bridgetest.pb.h"
#include "updatekelvar/fetch/xpbjson.h"

namespace {

using kelvar::types::extended_method::GetUpgradePacket_Request;
using MaterialMeta = kelvar::types::material::Meta;

std::string json(const google::protobuf::Message& message, bool enumAsName = false) {
    std::string text;
    XPbJson().toJsonString(message, text, enumAsName);
    return text;
}

/// JSON of a message in the library's text format.
template <class Message>
std::string json(const std::string& fields, bool enumAsName = false) {
    Message message;
    EXPECT_TRUE(google::protobuf::TextFormat::ParseFromString(fields, &message)) << fields;
    return json(message, enumAsName);
}

/// Each text with what a message holds after reading it, in the library's text format.
template <class Message>
void expectRead(const std::vector<std::pair<std::string, std::string>>& rows,
                bool enumAsName = false) {
    for (const auto& [text, fields] : rows) {
        Message message;
        EXPECT_TRUE(XPbJson().fromJsonString(text, &message, enumAsName)) << text;
        EXPECT_EQ(message.ShortDebugString(), fields) << text;
    }
}

TEST(BridgeWrites, EverySingularFieldButDoubleAndGroup) {
    EXPECT_EQ(json(bridgetest::One()),
              R"({"a_bool":false,"a_bytes":"","a_enum":0,"a_fixed32":0,"a_fixed64":0,)"
              R"("a_float":0.0,"a_int32":0,"a_int64":0,"a_sfixed32":0,"a_sfixed64":0,)"
              R"("a_sint32":0,"a_sint64":0,"a_string":"","a_uint32":0,"a_uint64":0,)"
              R"("an_empty":null,"an_inner":{"colour":0,"text":""}})"
              "\n");
    const char* fields =
        R"(a_double: 1.5 a_float: 1.5 a_int32: -1 a_sint32: -2 a_sfixed32: -3 a_uint32: 4294967295
           a_fixed32: 5 a_int64: -5000000000 a_sint64: -7 a_sfixed64: -8
           a_uint64: 18446744073709551615 a_fixed64: 10 a_bool: true a_string: "\303\244\""
           a_bytes: "b" a_enum: RED AGroup {} an_inner { text: "t" colour: BLUE })";
    std::string expected =
        R"({"a_bool":true,"a_bytes":"b","a_enum":1,"a_fixed32":5,"a_fixed64":10,)"
        R"("a_float":1.5,"a_int32":-1,"a_int64":-5000000000,"a_sfixed32":-3,"a_sfixed64":-8,)"
        R"("a_sint32":-2,"a_sint64":-7,"a_string":"\u00e4\"","a_uint32":4294967295,)"
        R"("a_uint64":18446744073709551615,"an_empty":null,)"
        R"("an_inner":{"colour":2,"text":"t"}})"
        "\n";
    EXPECT_EQ(json<bridgetest::One>(fields), expected);
    expected.replace(expected.find(":1,"), 3, R"(:"RED",)"); // the inner level keeps its number
    EXPECT_EQ(json<bridgetest::One>(fields, true), expected);
}

TEST(BridgeWrites, ElementsAsObjectsKeyedByTheirField) {
    EXPECT_EQ(json(bridgetest::Many()), "null\n");
    EXPECT_EQ(json<bridgetest::Many>(
                  R"(a_double: 1 a_float: 0.5 a_int32: 0 a_int32: -1 a_sint32: -2 a_sfixed32: -3
               a_uint32: 4294967295 a_fixed32: 1 a_int64: -5000000000 a_sint64: -4 a_sfixed64: -5
               a_uint64: 5000000000 a_fixed64: 2 a_bool: false a_string: "a" a_string: ""
               a_bytes: "b" a_enum: NONE a_enum: BLUE AGroup {} an_inner {}
               an_inner { colour: RED })"),
              R"({"a_bool":[{"a_bool":false}],"a_bytes":[{"a_bytes":"b"}],"a_double":[null],)"
              R"("a_enum":[0,2],"a_fixed32":[{"a_fixed32":1}],"a_fixed64":[{"a_fixed64":2}],)"
              R"("a_float":[{"a_float":0.5}],"a_int32":[{"a_int32":0},{"a_int32":-1}],)"
              R"("a_int64":[{"a_int64":-5000000000}],"a_sfixed32":[{"a_sfixed32":-3}],)"
              R"("a_sfixed64":[{"a_sfixed64":-5}],"a_sint32":[{"a_sint32":-2}],)"
              R"("a_sint64":[{"a_sint64":-4}],"a_string":[{"a_string":"a"},{"a_string":""}],)"
              R"("a_uint32":[{"a_uint32":4294967295}],"a_uint64":[{"a_uint64":5000000000}],)"
              R"("agroup":[null],"an_inner":[null,{"colour":1,"text":""}]})"
              "\n");
    EXPECT_EQ(json<bridgetest::Many>("a_enum: BLUE", true), "{\"a_enum\":[\"BLUE\"]}\n");
}

TEST(BridgeWrites, MapAsObjectInTheUpgradeRequestOnly) {
    GetUpgradePacket_Request request;
    request.set_channel_code("c");
    (*request.mutable_params())["kelvar_test"] = std::string("true\0cut", 8);
    (*request.mutable_params())[""] = "";
    EXPECT_EQ(json(request), R"({"channel_code":"c","channel_unique_code":"","customer":)"
                             R"({"asset_id":{"id":0,"oid":0},"client":""},"need_min_ver":false,)"
                             R"("params":{"":"","kelvar_test":"true"},"species_unique_code":"",)"
                             R"("version":""})"
                             "\n");
    EXPECT_NE(json<MaterialMeta>(R"(extends { key: "exec" value: "x" })")
                  .find(R"("extends":[{"key":"exec","value":"x"}])"),
              std::string::npos);
}

TEST(BridgeReads, SingularFieldsByTheirTests) {
    expectRead<bridgetest::One>({
        {R"({"a_double":1,"a_float":1.5,"a_int32":-5,"a_sint32":-6,"a_sfixed32":2.0,)"
         R"("a_uint32":4294967295,"a_fixed32":1,"a_int64":12,"a_sint64":-1,)"
         R"("a_sfixed64":2147483647,"a_uint64":4294967295,"a_fixed64":7,"a_bool":true,)"
         R"("a_string":"t","a_bytes":"YQ==","an_inner":{"text":"t","colour":1}})",
         R"(a_double: 1 a_float: 1.5 a_int32: -5 a_sint32: -6 a_sfixed32: 2 )"
         R"(a_uint32: 4294967295 a_fixed32: 1 a_int64: 12 a_sint64: -1 )"
         R"(a_sfixed64: 2147483647 a_uint64: 4294967295 a_fixed64: 7 a_bool: true )"
         R"(a_string: "t" a_bytes: "YQ==" an_inner { text: "t" })"},
        {R"({"a_double":"1","a_float":"1","a_int32":"5","a_uint32":"5","a_int64":"12",)"
         R"("a_uint64":"12","a_bool":"maybe","a_enum":"RED","agroup":"x","an_inner":"x"})",
         ""},
        // the 64-bit types take the 32-bit tests
        {R"({"a_int32":2147483648,"a_sint32":2.5,"a_uint32":-1,"a_int64":5000000000,)"
         R"("a_sint64":2147483648,"a_fixed64":4294967296,"a_string":5,"a_bytes":5,"a_enum":1})",
         ""},
        {R"({"a_double":true,"a_float":true,"a_bool":null,"agroup":{},"an_inner":[]})", ""},
        {R"({"a_bool":false})", "a_bool: false"},
        {R"({"a_bool":0})", "a_bool: true"}, // the test's result is stored
        {R"({"a_bool":"true"})", "a_bool: true"},
        {R"({"a_bool":"false"})", "a_bool: false"},
        {R"({"unknown":1,"a_int32":1})", "a_int32: 1"},
        {"[]", ""}, // a root with no members
        {R"({"a_int32":1,"x":[ [2, "],[" ] , {} ]}{"a_int32":[nil)", "a_int32: 1"},
    });
}

TEST(BridgeReads, ElementsThatPassAndDropsTheOthers) {
    expectRead<bridgetest::Many>({
        {R"({"a_double":[1.5,"x",2],"a_float":[true,1],"a_int32":[1,"x",2147483648,-2],)"
         R"("a_sint32":[1],"a_sfixed32":[null,2],"a_uint32":[-1,3],"a_fixed32":[4],)"
         R"("a_int64":[5000000000,5],"a_sint64":[6],"a_sfixed64":[7],"a_uint64":[5000000000,8],)"
         R"("a_fixed64":[9],"a_bool":[true,false,0,3,"true","no","false"],)"
         R"("a_string":["a",{"a_string":"a"},"b"],"a_bytes":["c"],"a_enum":[2,7,"RED",{},1],)"
         R"("agroup":[{}],"an_inner":[1,{"text":"t"},{}]})",
         R"(a_double: 1.5 a_double: 2 a_float: 1 a_int32: 1 a_int32: -2 a_sint32: 1 )"
         R"(a_sfixed32: 2 a_uint32: 3 a_fixed32: 4 a_int64: 5 a_sint64: 6 a_sfixed64: 7 )"
         R"(a_uint64: 8 a_fixed64: 9 a_bool: false a_bool: true a_bool: true a_bool: false )"
         R"(a_string: "a" a_string: "b" a_bytes: "c" a_enum: BLUE a_enum: RED )"
         R"(an_inner { text: "t" } an_inner { })"},
        {R"({"a_float":[1],"a_int32":null,"a_string":["a"]})", "a_float: 1"}, // ends the walk
    });
    // the inner level takes numbers all the same
    expectRead<bridgetest::Many>({{R"({"a_enum":["BLUE","GREEN",[],1],)"
                                   R"("an_inner":[{"colours":[1,"BLUE"]}]})",
                                   "a_enum: BLUE an_inner { colours: RED }"}},
                                 true);
    expectRead<bridgetest::One>(
        {{R"({"an_inner":{"colours":[1,"BLUE"]}})", "an_inner { colours: RED }"}}, true);
}

TEST(BridgeReads, MapsByTheirFixedKeysAndEndsTheMessage) {
    expectRead<MaterialMeta>({
        {R"({"md5":"m","extends":{"osver":"o","other":"x","exec":5},"create_time":{"seconds":3}})",
         R"(md5: "m" extends { key: "osver" value: "o" })"},
        {R"({"extends":[{"key":"k","value":"v"},1],"create_time":{"seconds":3}})",
         R"(extends { key: "k" value: "v" } create_time { seconds: 3 })"},
        {R"({"extends":"x","create_time":{"seconds":3}})", ""},
        {R"({"file_type":1,"execute_type":2,"create_time":"2020","update_time":{"seconds":4}})",
         "update_time { seconds: 4 }"},
    });
    expectRead<kelvar::types::packet::Meta>(
        {{R"({"change_log":"l","extends":{"restart_tray":"1","exec":"x"},"md5":"m"})",
          R"(extends { key: "restart_tray" value: "1" } change_log: "l")"}});
    expectRead<kelvar::BatchGetMaterialMeta_Response>(
        {{R"({"status":null,"metas":[{}]})", ""},
         {R"({"metas":[1,{"meta":{}}]})", "metas { meta { } }"}});

    MaterialMeta all;
    (*all.mutable_extends())["exec"] = "before"; // an entry that is there is not replaced
    XPbJson().fromJsonString(
        R"({"extends":{"osver":"1","file_path":"2","file_md5":"3","check_sys":"4",)"
        R"("check_app":"5","non_cab":"6","dependent":"7","exec":"8"}})",
        &all, false);
    EXPECT_EQ(all.extends_size(), 8);
    EXPECT_EQ(all.extends().at("exec"), "before");
}

/// The fields of a message in the order in which the bridge walks them; a repeated one, a
/// map too, is marked by a "*".
std::string fieldsOf(const google::protobuf::Descriptor* message) {
    std::string text;
    for (int i = 0; i < message->field_count(); ++i) {
        const auto* field = message->field(i);
        text += (i > 0 ? " " : "") + std::to_string(field->number()) + ":" + field->name() +
                (field->is_repeated() ? "*" : "");
    }
    return text;
}

/// The messages that are not declared in the order of their numbers, or where a field in
/// front can end the reading of those behind it.
TEST(BridgeReads, FieldsInTheOrderOfTheirDeclaration) {
    const std::pair<const google::protobuf::Descriptor*, const char*> rows[] = {
        {vantor::StaffId::descriptor(), "3:asset_id 2:id"},
        {kelvar::types::extended_method::FullPacketDiff::descriptor(),
         "1:channel_id 2:start_version 3:target_version 4:rely_channels* 5:modules* 6:materials* "
         "8:need_migration_modules* 7:is_delete"},
        {kelvar::types::packet::Meta::descriptor(),
         "21:change_log 3:base_version 5:extends* 7:md5 17:file_id 18:file_type "
         "19:data_type_block_id 20:file_hash 8:is_referenced 10:create_time 11:update_time "
         "12:audit_state 13:type 14:operate_time 15:operator 16:creator"},
        {kelvar::BatchGetMaterialMeta_Response::descriptor(),
         "5:status* 6:headers* 7:trailers* 101:metas*"},
        {MaterialMeta::descriptor(),
         "1:file_id 2:file_type 3:md5 8:file_hash 9:execute_type 10:execute_param "
         "4:is_referenced 5:extends* 6:create_time 7:update_time"},
    };
    for (const auto& [message, fields] : rows) {
        EXPECT_EQ(fieldsOf(message), fields) << message->full_name();
    }
}

TEST(BridgeReads, OnlyStrictJson) {
    for (const char* text :
         {"", "5", "\"x\"", "{", "// c\n{}", "{\"a\":1,}", "not json", R"({"a_int32":8,"x":[1,]})",
          R"({"a_int32":8,"x":[,1]})", R"({"a_int32":8,"x":[1 2]})", R"({"a_int32":8,"x":[{]}]})",
          R"({"a_int32":8,"x":[1})", R"({"a_int32":8,"x":[tru]})", R"({"a_int32":8,"x":["\"]})",
          R"({"a_int32":8,"an_inner":[{"text":[1}]})", R"({"x":[nil],"x":[],"a_int32":8})",
          // The library takes a comment in these places.
          "{\"a_int32\":8 /* } */,\"an_inner\":[999999]}", "{\"a_int32\":8 /* \" */,\"x\":[1]}",
          "{\"x\":[1] /* , ] */,\"an_inner\":[{}]}", "{\"a_int32\":8 // }\n,\"an_inner\":[{}]}",
          "{\"x\":[{}] /* } */,\"an_inner\":[0]}", "{\"x\":[1 /* x */,2],\"a_int32\":8}",
          "{\"x\":[{} // row\n],\"a_int32\":8}", "{/**/\"a_int32\":8}"}) {
        bridgetest::One one;
        one.set_a_int32(7);
        EXPECT_FALSE(XPbJson().fromJsonString(text, &one, false)) << text;
        EXPECT_EQ(one.ShortDebugString(), "a_int32: 7") << text;
    }
}

TEST(BridgeReads, ArraysWithAnythingInTheirTexts) {
    const struct {
        const char* text;
        std::vector<std::string> elements;
    } rows[] = {
        {R"([])", {}},
        {R"([ "" , "]" ])", {"", "]"}},
        {R"(["a\"b","c"])", {"a\"b", "c"}},
        {R"(["a\\","b"])", {"a\\", "b"}},
        {R"(["\\\"],[","\\\\\",\"","}{"])", {"\\\"],[", "\\\\\",\"", "}{"}},
        {R"(["\"","\\","\\\""])", {"\"", "\\", "\\\""}},
        {R"([{"a":["x,\"]"]},"b",["c"],null])", {"b"}},
        {R"(["/* \"","// ]"])", {"/* \"", "// ]"}},
    };
    for (const auto& [text, elements] : rows) {
        bridgetest::Many many;
        const std::string json = std::string(R"({"x":)") + text + R"(,"a_string":)" + text +
                                 R"(,"a_int32":[8]} {"a_string":[tru]} [")";
        EXPECT_TRUE(XPbJson().fromJsonString(json, &many, false)) << json;
        const std::vector<std::string> read(many.a_string().begin(), many.a_string().end());
        EXPECT_EQ(read, elements) << json;
        EXPECT_EQ(many.a_int32_size(), 1) << "what follows the array, and nothing behind the root";
    }
}

TEST(BridgeReads, NothingOfAnAnswerWithABrokenElement) {
    for (const char* array : {R"(["a",tru,"b"])", R"([tru,"a"])", R"(["a",])", R"(["a" "b"])",
                              R"(["a",{"b":]}])", R"(["a\"])"}) {
        for (const char* name : {"a_string", "nobody's"}) {
            bridgetest::Many many;
            many.add_a_int32(7);
            const std::string json =
                std::string(R"({"a_int32":[8],")") + name + "\":" + array + '}';
            EXPECT_FALSE(XPbJson().fromJsonString(json, &many, false)) << json;
            EXPECT_EQ(many.ShortDebugString(), "a_int32: 7") << json;
        }
    }
}

TEST(BridgeReads, NestingUpTo999Levels) {
    const auto reads = [](std::size_t depth) { // brackets within a text do not count
        bridgetest::One one;
        const std::string inner = std::string(depth - 1, '[') + std::string(depth - 1, ']');
        const std::string text = R"({"a_string":"[\"[","unknown":)" + inner + "}";
        return XPbJson().fromJsonString(text, &one, false) && one.a_string() == "[\"[";
    };
    EXPECT_TRUE(reads(999));
    EXPECT_FALSE(reads(1000));
    std::string siblings = R"({"unknown":[{})";
    for (int i = 0; i < 1000; ++i) {
        siblings += ",[],{}";
    }
    bridgetest::One one;
    EXPECT_TRUE(XPbJson().fromJsonString(siblings + "]}", &one, false));
    const std::string deep = std::string(1000, '[') + std::string(1000, ']');
    EXPECT_FALSE(XPbJson().fromJsonString(deep, &one, false)) << "no text in front of it";
}

} // namespace
