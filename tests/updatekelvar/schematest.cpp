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

/// Numbers, order and names are the wire format: what the platform expects, in one place.
const Row rows[] = {
    {"vantor.AssetId", "1 oid int64; 2 id int64"},
    {"vantor.StaffId", "3 asset_id vantor.AssetId; 2 id int64"},
    {"kelvar.types.Customer", "1 asset_id vantor.AssetId; 2 client string"},
    {"kelvar.types.ChannelId", "1 product_id string; 2 id string"},
    {"kelvar.types.ModuleId", "1 channel_id kelvar.types.ChannelId; 2 id string"},
    {"kelvar.types.MaterialId", "1 module_id kelvar.types.ModuleId; 2 id string"},
    {"kelvar.types.MaterialVersionId", "1 material_id kelvar.types.MaterialId; 2 ver string"},
    {"kelvar.types.PacketId", "1 channel_id kelvar.types.ChannelId; 2 ver string"},
    {"kelvar.types.extended_method.GetUpgradePacket.Request",
     "1 customer kelvar.types.Customer; 2 species_unique_code string; "
     "3 channel_unique_code string; 4 version string; 5 channel_code string; 6 params map; "
     "7 need_min_ver bool"},
    {"kelvar.types.extended_method.GetUpgradePacket.Response", "1 target kelvar.types.PacketId"},
    {"kelvar.types.extended_method.GetFullPacketDiff.Request",
     "1 channel_id string; 2 start_ver string; 3 target_ver string"},
    {"kelvar.types.extended_method.GetFullPacketDiff.Response",
     "1 full_packet_diff kelvar.types.extended_method.FullPacketDiff"},
    {"kelvar.types.extended_method.FullPacketDiff",
     "1 channel_id string; 2 start_version string; 3 target_version string; "
     "4 rely_channels repeated kelvar.types.extended_method.FullPacketDiff; "
     "5 modules repeated kelvar.types.extended_method.ModuleCouple; "
     "6 materials repeated kelvar.types.extended_method.MaterialCouple; "
     "8 need_migration_modules repeated kelvar.types.extended_method.MigrationModule; "
     "7 is_delete bool"},
    {"kelvar.types.extended_method.ModuleCouple",
     "1 module_id kelvar.types.ModuleId; 2 base_version string; 3 target_version string; "
     "4 is_delete bool"},
    {"kelvar.types.extended_method.MaterialCouple",
     "1 material_id kelvar.types.MaterialId; 2 base_version string; 3 target_version string; "
     "4 is_delete bool"},
    {"kelvar.types.extended_method.MigrationModule",
     "1 module_id kelvar.types.ModuleId; 2 data_type_block_id_path repeated string; "
     "3 start_block_id string"},
    {"kelvar.types.extended_method.GetFileStorageAddr.Response",
     "1 normal_file_addr string; 2 docker_file_addr string; 3 test_file_addr string"},
    {"kelvar.GetPacketMeta.Request", "1 key kelvar.types.PacketId; 5 subscriber string"},
    {"kelvar.GetPacketMeta.Response", "9 version int64; 101 meta kelvar.types.packet.Meta"},
    {"kelvar.types.packet.Meta",
     "21 change_log string; 3 base_version string; 5 extends map; 7 md5 string; "
     "17 file_id string; 18 file_type kelvar.types.FileType; 19 data_type_block_id string; "
     "20 file_hash string; 8 is_referenced bool; 10 create_time google.protobuf.Timestamp; "
     "11 update_time google.protobuf.Timestamp; 12 audit_state kelvar.types.AuditState; "
     "13 type kelvar.types.PacketType; 14 operate_time google.protobuf.Timestamp; "
     "15 operator vantor.StaffId; 16 creator vantor.StaffId"},
    {"kelvar.BatchGetMaterialMeta.Request",
     "1 keys repeated kelvar.GetMaterialMeta.Request; 5 headers repeated kelvar.Metadata"},
    {"kelvar.BatchGetMaterialMeta.Response",
     "5 status repeated google.rpc.Status; 6 headers repeated kelvar.Metadata; "
     "7 trailers repeated kelvar.Metadata; 101 metas repeated kelvar.GetMaterialMeta.Response"},
    {"kelvar.GetMaterialMeta.Request", "1 key kelvar.types.MaterialVersionId; 5 subscriber string"},
    {"kelvar.GetMaterialMeta.Response", "9 version int64; 101 meta kelvar.types.material.Meta"},
    {"kelvar.types.material.Meta",
     "1 file_id string; 2 file_type kelvar.types.FileType; 3 md5 string; 8 file_hash string; "
     "9 execute_type kelvar.types.ExecuteType; 10 execute_param string; 4 is_referenced bool; "
     "5 extends map; 6 create_time google.protobuf.Timestamp; "
     "7 update_time google.protobuf.Timestamp"},
    {"kelvar.Metadata", "1 entrys repeated kelvar.Metadata.MetadataEntry"},
    {"kelvar.Metadata.MetadataEntry", "1 key string; 2 value string"},
    {"google.rpc.Status", "1 code int32; 2 message string; 3 details repeated google.protobuf.Any"},
};

TEST(Schema, MessagesAsThePlatformHasThem) {
    kelvar::BatchGetMaterialMeta_Request::descriptor(); // links the files in
    kelvar::types::extended_method::GetUpgradePacket_Request::descriptor();
    for (const Row& row : rows) {
        EXPECT_EQ(fieldsOf(row.message), row.fields) << row.message;
    }
}

} // namespace
