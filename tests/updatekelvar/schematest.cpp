#include <gtest/gtest.h>

#include <google/protobuf/descriptor.h>

#include "kelvar/api.pb.h"
#include "kelvar/types/extended_method/methods.pb.h"

namespace {

using google::protobuf::DescriptorPool;
using google::protobuf::FieldDescriptor;

std::string typeOf(const FieldDescriptor* field) {
    if (field->is_map()) {
        return "map";
    }
    const std::string repeated = field->is_repeated() ? "repeated " : "";
    if (field->message_type()) {
        return repeated + field->message_type()->full_name();
    }
    return repeated + (field->enum_type() ? field->enum_type()->full_name() : field->type_name());
}

/// The fields of a message in the order in which the bridge walks them.
std::string fieldsOf(const char* name) {
    const auto* message = DescriptorPool::generated_pool()->FindMessageTypeByName(name);
    std::string text;
    for (int i = 0; message && i < message->field_count(); ++i) {
        const FieldDescriptor* field = message->field(i);
        text += (i > 0 ? "; " : "") + std::to_string(field->number()) + " " + field->name() + " " +
                typeOf(field);
    }
    return text;
}

struct Row {
    const char* message;
    const char* fields;
};

/// The messages that are not declared in the order of their numbers, or where a field in
/// front can end the reading of those behind it.
const Row rows[] = {
    {"vantor.StaffId", "3 asset_id vantor.AssetId; 2 id int64"},
    {"kelvar.types.extended_method.FullPacketDiff",
     "1 channel_id string; 2 start_version string; 3 target_version string; "
     "4 rely_channels repeated kelvar.types.extended_method.FullPacketDiff; "
     "5 modules repeated kelvar.types.extended_method.ModuleCouple; "
     "6 materials repeated kelvar.types.extended_method.MaterialCouple; "
     "8 need_migration_modules repeated kelvar.types.extended_method.MigrationModule; "
     "7 is_delete bool"},
    {"kelvar.types.packet.Meta",
     "21 change_log string; 3 base_version string; 5 extends map; 7 md5 string; "
     "17 file_id string; 18 file_type kelvar.types.FileType; 19 data_type_block_id string; "
     "20 file_hash string; 8 is_referenced bool; 10 create_time google.protobuf.Timestamp; "
     "11 update_time google.protobuf.Timestamp; 12 audit_state kelvar.types.AuditState; "
     "13 type kelvar.types.PacketType; 14 operate_time google.protobuf.Timestamp; "
     "15 operator vantor.StaffId; 16 creator vantor.StaffId"},
    {"kelvar.BatchGetMaterialMeta.Response",
     "5 status repeated google.rpc.Status; 6 headers repeated kelvar.Metadata; "
     "7 trailers repeated kelvar.Metadata; 101 metas repeated kelvar.GetMaterialMeta.Response"},
    {"kelvar.types.material.Meta",
     "1 file_id string; 2 file_type kelvar.types.FileType; 3 md5 string; 8 file_hash string; "
     "9 execute_type kelvar.types.ExecuteType; 10 execute_param string; 4 is_referenced bool; "
     "5 extends map; 6 create_time google.protobuf.Timestamp; "
     "7 update_time google.protobuf.Timestamp"},
};

TEST(Schema, FieldsStandInTheOrderOfReading) {
    kelvar::BatchGetMaterialMeta_Request::descriptor(); // links the files in
    kelvar::types::extended_method::GetFullPacketDiff_Response::descriptor();
    for (const Row& row : rows) {
        EXPECT_EQ(fieldsOf(row.message), row.fields) << row.message;
    }
}

} // namespace
