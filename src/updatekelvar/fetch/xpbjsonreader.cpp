#include <string_view>

#include <json/json.h>

#include <google/protobuf/descriptor.h>
#include <google/protobuf/message.h>

#include "kelvar/types/material_meta.pb.h"
#include "kelvar/types/packet_meta.pb.h"
#include "updatekelvar/fetch/jsontext.h"
#include "updatekelvar/fetch/xpbjson.h"

using google::protobuf::EnumDescriptor;
using google::protobuf::EnumValueDescriptor;
using google::protobuf::FieldDescriptor;
using google::protobuf::Message;
using google::protobuf::Reflection;

namespace {

/// The only keys that a map field takes from an object.
constexpr const char* materialKeys[] = {"osver",     "file_path", "file_md5",  "check_sys",
                                        "check_app", "non_cab",   "dependent", "exec"};
constexpr const char* packetKeys[] = {"restart_tray"};

/// A field to set, or a repeated field to add to.
struct Target {
    Message* message;
    const FieldDescriptor* field;
    const Reflection* reflection;

    template <class Argument, class T>
    void put(void (Reflection::*set)(Message*, const FieldDescriptor*, Argument) const,
             void (Reflection::*add)(Message*, const FieldDescriptor*, Argument) const,
             T value) const {
        (reflection->*(field->is_repeated() ? add : set))(message, field, std::move(value));
    }

    void putBool(bool value) const { put(&Reflection::SetBool, &Reflection::AddBool, value); }
};

/// Numbers and texts, alike for singular fields and elements. The 64-bit types take the
/// 32-bit tests: a number beyond 32 bits is not read.
void readScalar(const Json::Value& value, const Target& target) {
    switch (target.field->type()) {
    case FieldDescriptor::TYPE_DOUBLE:
        if (value.isDouble()) {
            target.put(&Reflection::SetDouble, &Reflection::AddDouble, value.asDouble());
        }
        break;
    case FieldDescriptor::TYPE_FLOAT:
        if (value.isDouble()) {
            target.put(&Reflection::SetFloat, &Reflection::AddFloat, value.asFloat());
        }
        break;
    case FieldDescriptor::TYPE_INT32:
    case FieldDescriptor::TYPE_SINT32:
    case FieldDescriptor::TYPE_SFIXED32:
        if (value.isInt()) {
            target.put(&Reflection::SetInt32, &Reflection::AddInt32, value.asInt());
        }
        break;
    case FieldDescriptor::TYPE_UINT32:
    case FieldDescriptor::TYPE_FIXED32:
        if (value.isUInt()) {
            target.put(&Reflection::SetUInt32, &Reflection::AddUInt32, value.asUInt());
        }
        break;
    case FieldDescriptor::TYPE_INT64:
    case FieldDescriptor::TYPE_SINT64:
    case FieldDescriptor::TYPE_SFIXED64:
        if (value.isInt()) {
            target.put(&Reflection::SetInt64, &Reflection::AddInt64, value.asInt64());
        }
        break;
    case FieldDescriptor::TYPE_UINT64:
    case FieldDescriptor::TYPE_FIXED64:
        if (value.isUInt()) {
            target.put(&Reflection::SetUInt64, &Reflection::AddUInt64, value.asUInt64());
        }
        break;
    case FieldDescriptor::TYPE_STRING:
    case FieldDescriptor::TYPE_BYTES: // raw bytes, no base64
        if (value.isString()) {
            target.put(&Reflection::SetString, &Reflection::AddString, value.asString());
        }
        break;
    default: // a singular enumeration and a group are never read
        break;
    }
}

void readBoolText(const Json::Value& value, const Target& target) {
    if (value.isString()) {
        if (const std::string text = value.asString(); text == "true" || text == "false") {
            target.putBool(text == "true");
        }
    }
}

void readBool(const Json::Value& value, const Target& target) {
    if (value.isBool()) {
        target.putBool(value.asBool());
    } else if (value.isInt()) {
        target.putBool(true); // every integer, 0 too: the platform's rule
    } else {
        readBoolText(value, target);
    }
}

/// A JSON true or false in an array is dropped, unlike a singular one.
void readBoolElement(const Json::Value& value, const Target& target) {
    if (value.isInt()) {
        target.putBool(value.asInt() != 0);
    } else {
        readBoolText(value, target);
    }
}

const EnumValueDescriptor* findEnumValue(const EnumDescriptor* type, const Json::Value& value,
                                         bool byName) {
    if (byName) {
        return value.isConvertibleTo(Json::stringValue) ? type->FindValueByName(value.asString())
                                                        : nullptr;
    }
    return value.isConvertibleTo(Json::intValue) ? type->FindValueByNumber(value.asInt()) : nullptr;
}

/// The named member; null for none and for a value that has no members at all.
const Json::Value* memberOf(const Json::Value& value, std::string_view key) {
    return value.isObject() ? value.find(key.data(), key.data() + key.size()) : nullptr;
}

template <class Meta, std::size_t count>
void readExtends(const Json::Value& value, Message* message, const char* const (&keys)[count]) {
    auto* meta = google::protobuf::DynamicCastToGenerated<Meta>(message);
    if (!meta) {
        return;
    }
    for (const char* key : keys) {
        const Json::Value* member = memberOf(value, key);
        if (member && member->isString()) {
            meta->mutable_extends()->try_emplace(key, member->asString());
        }
    }
}

} // namespace

bool XPbJson::fromJsonString(const std::string& json, Message* message, bool enumAsName) const {
    jsontext::Document document;
    if (!document.parse(json)) {
        return false;
    }
    // Into a message of its own, as an element may turn out to be no JSON.
    const std::unique_ptr<Message> read(message->New());
    read->CopyFrom(*message);
    if (!_jsonToMessage(document.root(), read.get(), enumAsName, &document) ||
        !document.parseUnread()) {
        return false;
    }
    message->GetReflection()->Swap(message, read.get());
    return true;
}

bool XPbJson::_jsonToMessage(const Json::Value& json, Message* message, bool enumAsName,
                             jsontext::Document* document) const {
    const google::protobuf::Descriptor* descriptor = message->GetDescriptor();
    const Reflection* reflection = message->GetReflection();
    if (!descriptor || !reflection) {
        return false;
    }
    for (int i = 0; i < descriptor->field_count(); ++i) {
        const FieldDescriptor* field = descriptor->field(i);
        const Json::Value* value = memberOf(json, field->name());
        if (!value) {
            continue;
        }
        if (!field->is_repeated()) {
            _jsonToSingular(*value, message, field, reflection);
        } else if (value->isArray()) {
            if (!document) {
                _jsonToRepeated(*value, message, field, enumAsName);
            } else if (!document->readElements(*value, [&](const Json::Value& element) {
                           _elementToMessage(element, message, field, enumAsName);
                       })) {
                return false;
            }
        } else {
            _mapFieldsFromJson(*value, message);
            return true; // a map ends the message: the fields declared behind it stay unread
        }
    }
    return true;
}

void XPbJson::_jsonToSingular(const Json::Value& value, Message* message,
                              const FieldDescriptor* field, const Reflection* reflection) const {
    const Target target{message, field, reflection};
    if (field->type() == FieldDescriptor::TYPE_BOOL) {
        readBool(value, target);
    } else if (field->type() == FieldDescriptor::TYPE_MESSAGE) {
        if (value.isObject()) {
            _jsonToMessage(value, reflection->MutableMessage(message, field), false);
        }
    } else {
        readScalar(value, target);
    }
}

void XPbJson::_jsonToRepeated(const Json::Value& array, Message* message,
                              const FieldDescriptor* field, bool enumAsName) const {
    for (const Json::Value& element : array) {
        _elementToMessage(element, message, field, enumAsName);
    }
}

void XPbJson::_elementToMessage(const Json::Value& element, Message* message,
                                const FieldDescriptor* field, bool enumAsName) const {
    const Reflection* reflection = message->GetReflection();
    const Target target{message, field, reflection};
    if (field->type() == FieldDescriptor::TYPE_BOOL) {
        readBoolElement(element, target);
    } else if (field->type() == FieldDescriptor::TYPE_MESSAGE) {
        if (element.isObject()) {
            _jsonToMessage(element, reflection->AddMessage(message, field), false);
        }
    } else if (field->type() == FieldDescriptor::TYPE_ENUM) {
        if (const EnumValueDescriptor* found =
                findEnumValue(field->enum_type(), element, enumAsName)) {
            reflection->AddEnum(message, field, found);
        }
    } else {
        readScalar(element, target);
    }
}

void XPbJson::_mapFieldsFromJson(const Json::Value& value, Message* message) const {
    const std::string& type = message->GetDescriptor()->full_name();
    if (type == "kelvar.types.material.Meta") {
        readExtends<kelvar::types::material::Meta>(value, message, materialKeys);
    } else if (type == "kelvar.types.packet.Meta") {
        readExtends<kelvar::types::packet::Meta>(value, message, packetKeys);
    }
}
