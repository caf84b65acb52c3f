#pragma once

#include <string>

#include <json/forwards.h>

namespace google::protobuf {
class FieldDescriptor;
class Message;
class Reflection;
} // namespace google::protobuf

namespace jsontext {
class Document;
}

/// JSON of the update platform's messages, by reflection. Keys are the fields' names as
/// declared. This is the platform's own format and not protobuf's mapping: what is left
/// out and what is not read is part of it. Holds nothing; any thread.
class XPbJson {
public:
    using Message = google::protobuf::Message;
    using FieldDescriptor = google::protobuf::FieldDescriptor;
    using Reflection = google::protobuf::Reflection;

    /// `out` becomes the message's JSON and a newline. Enumerations of the outermost
    /// level go by name under `enumAsName`, all others by number.
    void toJsonString(const Message& message, std::string& out, bool enumAsName) const;

    /// Reads what the message's fields find; values of another type are passed over.
    /// False for a text that is no strict JSON or nests deeper than 999 levels, with the
    /// message left as it was.
    bool fromJsonString(const std::string& json, Message* message, bool enumAsName) const;

private:
    void _messageToJson(const Message& message, Json::Value& json, bool enumAsName) const;
    void _repeatedToJson(const Message& message, const FieldDescriptor* field,
                         const Reflection* reflection, Json::Value& json, bool enumAsName) const;
    void _mapFieldsToJson(const Message& message, Json::Value& root) const;

    /// With a document `json` is its root, whose arrays it reads; false when one of them fails.
    bool _jsonToMessage(const Json::Value& json, Message* message, bool enumAsName,
                        jsontext::Document* document = nullptr) const;
    void _jsonToSingular(const Json::Value& value, Message* message, const FieldDescriptor* field,
                         const Reflection* reflection) const;
    void _jsonToRepeated(const Json::Value& array, Message* message, const FieldDescriptor* field,
                         bool enumAsName) const;
    void _elementToMessage(const Json::Value& element, Message* message,
                           const FieldDescriptor* field, bool enumAsName) const;
    void _mapFieldsFromJson(const Json::Value& value, Message* message) const;
};
