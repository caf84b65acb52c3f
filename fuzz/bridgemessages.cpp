#include "fuzz/bridgemessages.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>
#include <vector>

#include <google/protobuf/descriptor.h>

#include "fuzz/fuzz.h"
#include "kelvar/api.pb.h"
#include "kelvar/types/extended_method/methods.pb.h"
#include "platform/text.h"
#include "updatekelvar/bridgetest.pb.h"
#include "updatekelvar/fetch/xpbjson.h"

namespace fuzz {

namespace {

namespace methods = kelvar::types::extended_method;
using google::protobuf::FieldDescriptor;
using google::protobuf::Message;
using google::protobuf::Reflection;

const Message* const bridgeMessages[] = {
    &methods::GetUpgradePacket_Request::default_instance(),
    &methods::GetUpgradePacket_Response::default_instance(),
    &methods::GetFullPacketDiff_Response::default_instance(),
    &kelvar::GetPacketMeta_Response::default_instance(),
    &methods::GetFileStorageAddr_Response::default_instance(),
    &kelvar::BatchGetMaterialMeta_Request::default_instance(),
    &kelvar::BatchGetMaterialMeta_Response::default_instance(),
    &bridgetest::One::default_instance(),
    &bridgetest::Many::default_instance(),
};

/// Nested deeper, a text is not read.
constexpr std::ptrdiff_t maxDepth = 999;

/// The field whose map goes out as an object: it comes back as nothing and ends the reading.
bool isParams(const FieldDescriptor* field) {
    return field->full_name() == "kelvar.types.extended_method.GetUpgradePacket.Request.params";
}

bool isNeverWritten(const FieldDescriptor* field) {
    return field->type() == FieldDescriptor::TYPE_DOUBLE ||
           field->type() == FieldDescriptor::TYPE_GROUP;
}

/// Whether the message's JSON is an object; null without a member.
bool isWrittenAsObject(const Message& message) {
    for (int i = 0; i < message.GetDescriptor()->field_count(); ++i) {
        const FieldDescriptor* field = message.GetDescriptor()->field(i);
        if (field->is_repeated() ? message.GetReflection()->FieldSize(message, field) > 0
                                 : !isNeverWritten(field)) {
            return true;
        }
    }
    return false;
}

/// JSON has no word for these; no message of the platform has such a field.
bool hasNonFiniteFloat(const Message& message) {
    const auto isNonFinite = [](float value) {
        return !std::isfinite(value);
    };
    if (const auto* one = dynamic_cast<const bridgetest::One*>(&message)) {
        return isNonFinite(one->a_float());
    }
    const auto* many = dynamic_cast<const bridgetest::Many*>(&message);
    return many && std::any_of(many->a_float().begin(), many->a_float().end(), isNonFinite);
}

bool isUtf8(const std::string& text) {
    return platform::toUtf8(platform::toWide(text)) == text;
}

/// 64-bit numbers are read within 32 bits only.
template <class Narrow, class Wide>
Wide withinOrZero(Wide value) {
    const bool fits =
        value >= std::numeric_limits<Narrow>::min() && value <= std::numeric_limits<Narrow>::max();
    return fits ? value : 0;
}

void requireSame(const Message& was, const Message& is);

/// One field, before and after.
struct Pair {
    const Message& was;
    const Message& is;
    const FieldDescriptor* field;
    const Reflection* reflection;

    void require(bool holds, const char* promise) const {
        if (!holds) {
            fuzz::require(false, field->full_name() + ": " + promise, is.ShortDebugString());
        }
    }

    bool isAbsent() const {
        return field->is_repeated() ? reflection->FieldSize(is, field) == 0
                                    : !reflection->HasField(is, field);
    }

    bool sameValue() const {
        const Reflection& r = *reflection;
        switch (field->cpp_type()) {
        case FieldDescriptor::CPPTYPE_INT32:
            return r.GetInt32(was, field) == r.GetInt32(is, field);
        case FieldDescriptor::CPPTYPE_UINT32:
            return r.GetUInt32(was, field) == r.GetUInt32(is, field);
        case FieldDescriptor::CPPTYPE_INT64:
            return withinOrZero<std::int32_t>(r.GetInt64(was, field)) == r.GetInt64(is, field);
        case FieldDescriptor::CPPTYPE_UINT64:
            return withinOrZero<std::uint32_t>(r.GetUInt64(was, field)) == r.GetUInt64(is, field);
        case FieldDescriptor::CPPTYPE_FLOAT:
            return r.GetFloat(was, field) == r.GetFloat(is, field);
        case FieldDescriptor::CPPTYPE_BOOL:
            return r.GetBool(was, field) == r.GetBool(is, field);
        case FieldDescriptor::CPPTYPE_STRING:
            return !isUtf8(r.GetString(was, field)) ||
                   r.GetString(was, field) == r.GetString(is, field);
        default: // numbers in double precision and enumerations do not come back
            return isAbsent();
        }
    }

    void requireSingular() const {
        if (field->type() != FieldDescriptor::TYPE_MESSAGE) {
            require(sameValue(), "a value comes back");
        } else if (const Message& inner = reflection->GetMessage(was, field);
                   isWrittenAsObject(inner)) {
            require(!isAbsent(), "a message comes back");
            requireSame(inner, reflection->GetMessage(is, field));
        } else {
            require(isAbsent(), "a message without members does not come back");
        }
    }

    /// The elements that are written as objects.
    std::vector<const Message*> objectsOf(const Message& message) const {
        std::vector<const Message*> objects;
        for (int i = 0; i < reflection->FieldSize(message, field); ++i) {
            const Message& element = reflection->GetRepeatedMessage(message, field, i);
            if (element.ByteSizeLong() != 0 && isWrittenAsObject(element)) {
                objects.push_back(&element);
            }
        }
        return objects;
    }

    /// Entries of a map, which has no order.
    void requireEntries() const {
        using Entries = std::multiset<std::pair<std::string, std::string>>;
        bool plain = true;
        const auto entriesOf = [&](const Message& message) {
            Entries entries;
            for (const Message* entry : objectsOf(message)) {
                const auto text = [&](const FieldDescriptor* part) {
                    return entry->GetReflection()->GetString(*entry, part);
                };
                const auto added = entries.emplace(text(field->message_type()->map_key()),
                                                   text(field->message_type()->map_value()));
                plain = plain && isUtf8(added->first) && isUtf8(added->second);
            }
            return entries;
        };
        const bool same = entriesOf(was) == entriesOf(is);
        require(same || !plain, "entries come back");
    }

    void requireRepeated() const {
        if (field->is_map()) {
            requireEntries();
        } else if (field->type() == FieldDescriptor::TYPE_MESSAGE) {
            const std::vector<const Message*> expected = objectsOf(was);
            require(reflection->FieldSize(is, field) == static_cast<int>(expected.size()),
                    "elements that are not empty come back");
            for (std::size_t i = 0; i < expected.size(); ++i) {
                requireSame(*expected[i],
                            reflection->GetRepeatedMessage(is, field, static_cast<int>(i)));
            }
        } else if (field->type() == FieldDescriptor::TYPE_ENUM) {
            const int size = reflection->FieldSize(was, field);
            bool same = size == reflection->FieldSize(is, field);
            for (int i = 0; same && i < size; ++i) {
                same = reflection->GetRepeatedEnumValue(was, field, i) ==
                       reflection->GetRepeatedEnumValue(is, field, i);
            }
            require(same, "enumerations come back");
        } else {
            require(isAbsent(), "other elements do not come back");
        }
    }
};

void requireSame(const Message& was, const Message& is) {
    bool isEnded = false;
    for (int i = 0; i < was.GetDescriptor()->field_count(); ++i) {
        const FieldDescriptor* field = was.GetDescriptor()->field(i);
        const Pair pair{was, is, field, was.GetReflection()};
        isEnded = isEnded || isParams(field);
        if (isEnded) {
            pair.require(pair.isAbsent(), "nothing is read behind a map that is an object");
        } else if (field->is_repeated()) {
            pair.requireRepeated();
        } else {
            pair.requireSingular();
        }
    }
}

} // namespace

BridgeCase takeBridgeCase(std::string& input) {
    const char letter = input.empty() ? 'a' : input.front();
    input.erase(0, 1);
    constexpr std::size_t count = std::size(bridgeMessages);
    const unsigned number = static_cast<unsigned char>(letter) & 0x1FU; // "a" and "A" are 1
    return {std::unique_ptr<Message>(bridgeMessages[(number + count - 1) % count]->New()),
            (letter & 0x20) == 0};
}

void requireRoundTrip(const Message& message, bool enumAsName) {
    std::string text;
    XPbJson().toJsonString(message, text, enumAsName);
    require(!text.empty() && text.find('\n') == text.size() - 1, "a message is one line", text);
    require(std::all_of(text.begin(), text.end() - 1, [](char c) { return c >= 0x20; }),
            "all beyond plain characters is escaped", text);
    const auto brackets =
        std::count_if(text.begin(), text.end(), [](char c) { return c == '{' || c == '['; });
    if (brackets > maxDepth || hasNonFiniteFloat(message)) {
        return;
    }
    const std::unique_ptr<Message> again(message.New());
    const bool succ = XPbJson().fromJsonString(text, again.get(), enumAsName);
    require(succ == isWrittenAsObject(message), "what is written is read", text);
    if (succ) {
        requireSame(message, *again);
    }
}

} // namespace fuzz
