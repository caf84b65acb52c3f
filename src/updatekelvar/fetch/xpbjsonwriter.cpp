#include <json/json.h>

#include <google/protobuf/descriptor.h>
#include <google/protobuf/message.h>

#include "updatekelvar/fetch/jsontext.h"
#include "updatekelvar/fetch/xpbjson.h"

using google::protobuf::FieldDescriptor;
using google::protobuf::Message;
using google::protobuf::Reflection;

namespace {

constexpr const char* upgradePacketRequest =
    "kelvar.types.extended_method.GetUpgradePacket.Request";

/// A singular field, or one element of a repeated field.
struct Source {
    const Message& message;
    const FieldDescriptor* field;
    const Reflection* reflection;
    int index = 0; ///< of the element

    template <class T>
    T get(T (Reflection::*one)(const Message&, const FieldDescriptor*) const,
          T (Reflection::*element)(const Message&, const FieldDescriptor*, int) const) const {
        return field->is_repeated() ? (reflection->*element)(message, field, index)
                                    : (reflection->*one)(message, field);
    }

    Json::Value text() const {
        std::string scratch;
        return field->is_repeated()
                   ? reflection->GetRepeatedStringReference(message, field, index, &scratch)
                   : reflection->GetStringReference(message, field, &scratch);
    }

    Json::Value enumeration(bool asName) const {
        if (asName) {
            return get(&Reflection::GetEnum, &Reflection::GetRepeatedEnum)->name();
        }
        return get(&Reflection::GetEnumValue, &Reflection::GetRepeatedEnumValue);
    }
};

/// Null for the types that are never written: double and group. Messages are not values.
Json::Value valueOf(const Source& source, bool enumAsName) {
    switch (source.field->type()) {
    case FieldDescriptor::TYPE_FLOAT:
        return source.get(&Reflection::GetFloat, &Reflection::GetRepeatedFloat);
    case FieldDescriptor::TYPE_INT32:
    case FieldDescriptor::TYPE_SINT32:
    case FieldDescriptor::TYPE_SFIXED32:
        return source.get(&Reflection::GetInt32, &Reflection::GetRepeatedInt32);
    case FieldDescriptor::TYPE_UINT32:
    case FieldDescriptor::TYPE_FIXED32:
        return source.get(&Reflection::GetUInt32, &Reflection::GetRepeatedUInt32);
    case FieldDescriptor::TYPE_INT64:
    case FieldDescriptor::TYPE_SINT64:
    case FieldDescriptor::TYPE_SFIXED64:
        return Json::Int64{source.get(&Reflection::GetInt64, &Reflection::GetRepeatedInt64)};
    case FieldDescriptor::TYPE_UINT64:
    case FieldDescriptor::TYPE_FIXED64:
        return Json::UInt64{source.get(&Reflection::GetUInt64, &Reflection::GetRepeatedUInt64)};
    case FieldDescriptor::TYPE_BOOL:
        return source.get(&Reflection::GetBool, &Reflection::GetRepeatedBool);
    case FieldDescriptor::TYPE_STRING:
    case FieldDescriptor::TYPE_BYTES: // raw bytes, no base64
        return source.text();
    case FieldDescriptor::TYPE_ENUM:
        return source.enumeration(enumAsName);
    default:
        return {};
    }
}

/// The member of that field. Names of fields live as long as the process and are not copied.
Json::Value& memberFor(Json::Value& json, const FieldDescriptor* field) {
    return json[Json::StaticString(field->name().c_str())];
}

/// Text up to its first zero byte; empty for a value that is no text.
const char* zeroTerminated(const Json::Value& value) {
    return value.isString() ? value.asCString() : "";
}

} // namespace

void XPbJson::toJsonString(const Message& message, std::string& out, bool enumAsName) const {
    Json::Value root;
    _messageToJson(message, root, enumAsName);
    _mapFieldsToJson(message, root);
    out = jsontext::write(root);
}

void XPbJson::_messageToJson(const Message& message, Json::Value& json, bool enumAsName) const {
    const google::protobuf::Descriptor* descriptor = message.GetDescriptor();
    const Reflection* reflection = message.GetReflection();
    if (!descriptor || !reflection) {
        return;
    }
    for (int i = 0; i < descriptor->field_count(); ++i) {
        const FieldDescriptor* field = descriptor->field(i);
        if (field->is_repeated()) {
            if (reflection->FieldSize(message, field) > 0) {
                _repeatedToJson(message, field, reflection, memberFor(json, field), enumAsName);
            }
        } else if (field->type() == FieldDescriptor::TYPE_MESSAGE) {
            _messageToJson(reflection->GetMessage(message, field), memberFor(json, field), false);
        } else if (Json::Value value = valueOf({message, field, reflection}, enumAsName);
                   !value.isNull()) {
            memberFor(json, field) = std::move(value); // set or not: the platform wants all keys
        }
    }
}

void XPbJson::_repeatedToJson(const Message& message, const FieldDescriptor* field,
                              const Reflection* reflection, Json::Value& json,
                              bool enumAsName) const {
    const FieldDescriptor::Type type = field->type();
    for (int i = 0; i < reflection->FieldSize(message, field); ++i) {
        Json::Value item;
        if (type == FieldDescriptor::TYPE_MESSAGE) {
            const Message& element = reflection->GetRepeatedMessage(message, field, i);
            if (element.ByteSizeLong() != 0) { // else the item stays null
                _messageToJson(element, item, false);
            }
        } else if (Json::Value value = valueOf({message, field, reflection, i}, enumAsName);
                   type == FieldDescriptor::TYPE_ENUM) {
            item = std::move(value);
        } else if (!value.isNull()) {
            // An object around each value, which the reader does not take back.
            memberFor(item, field) = std::move(value);
        }
        json.append(std::move(item));
    }
}

void XPbJson::_mapFieldsToJson(const Message& message, Json::Value& root) const {
    if (message.GetTypeName() != upgradePacketRequest) {
        return; // maps of other messages stay arrays of entries
    }
    Json::Value& params = root["params"];
    Json::Value members;
    if (params.isArray()) {
        for (const Json::Value& element : params) {
            if (element.isObject()) {
                members[zeroTerminated(element["key"])] = zeroTerminated(element["value"]);
            }
        }
    }
    params = std::move(members);
}
