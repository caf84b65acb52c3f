#include "sandbox/check/shape.h"

#include <algorithm>
#include <string_view>

namespace sandbox::check {
namespace {

using Json = nlohmann::json;

const char* wordsOf(Holds holds) {
    switch (holds) {
    case Holds::text:
        return "a text";
    case Holds::number:
        return "a number of 0 or more";
    case Holds::whole:
        return "a whole number";
    case Holds::flag:
        return "true or false";
    case Holds::object:
    case Holds::patch:
    case Holds::anyObject:
        return "an object";
    case Holds::list:
        return "an array of objects";
    case Holds::texts:
        return "an array of texts";
    case Holds::textMap:
        return "an object of texts";
    case Holds::numberMap:
        return "an object of numbers";
    case Holds::names:
        return "\"all\" or an array of texts";
    case Holds::textsOrNumber:
        return "an array of texts or a number of 0 or more";
    case Holds::numbers:
        return "a number of 0 or more, or an array of such";
    case Holds::record:
        return "a number of 0 or more, an object or \"none\"";
    case Holds::anyList:
        return "an array";
    case Holds::textOrNull:
        return "a text or null";
    default:
        return "anything";
    }
}

bool allTexts(const Json& values) {
    return std::all_of(values.begin(), values.end(),
                       [](const Json& value) { return value.is_string(); });
}

bool allNumbers(const Json& values) {
    return std::all_of(values.begin(), values.end(),
                       [](const Json& value) { return value.is_number_unsigned(); });
}

bool areTexts(const Json& value) {
    return value.is_array() && allTexts(value);
}

bool fits(Holds holds, const Json& value) {
    switch (holds) {
    case Holds::text:
        return value.is_string();
    case Holds::number:
        return value.is_number_unsigned();
    case Holds::whole:
        return value.is_number_integer();
    case Holds::flag:
        return value.is_boolean();
    case Holds::object:
    case Holds::patch:
    case Holds::anyObject:
        return value.is_object();
    case Holds::list:
    case Holds::anyList:
        return value.is_array();
    case Holds::texts:
        return areTexts(value);
    case Holds::textMap:
        return value.is_object() && allTexts(value);
    case Holds::numberMap:
        return value.is_object() && allNumbers(value);
    case Holds::names:
        return value == "all" || areTexts(value);
    case Holds::textsOrNumber:
        return value.is_number_unsigned() || areTexts(value);
    case Holds::numbers:
        return value.is_number_unsigned() || (value.is_array() && allNumbers(value));
    case Holds::record:
        return value.is_number_unsigned() || value.is_object() || value == "none";
    case Holds::textOrNull:
        return value.is_string() || value.is_null();
    default:
        return true;
    }
}

class ShapeCheck {
public:
    ShapeCheck(const JsonText& whole, Mistakes& found) : json(whole), mistakes(found) {}

    void checkObject(const std::string& pointer, const Shape& shape, bool isPatch = false) {
        const Json& object = json.value().at(Json::json_pointer(pointer));
        if (!object.is_object()) {
            return add(pointer, "member-kind", std::string(shape.what) + " is no object");
        }
        for (const auto& [name, value] : object.items()) {
            const Member* member = find(shape, name);
            const bool isRemoved = isPatch && value.is_null();
            if (member != nullptr && !isRemoved) {
                checkMember(memberOf(pointer, name), value, *member, isPatch);
            } else if (member == nullptr && name != "comment" && !shape.isOpen) {
                add(memberOf(pointer, name), "member-unknown",
                    shape.what + (" has no member \"" + name + "\"") + known(shape));
            }
        }
        for (const Member& member : shape.members) {
            if (member.isNeeded && !isPatch && !object.contains(member.name)) {
                add(pointer, "member-missing",
                    shape.what + (" needs the member \"" + std::string(member.name) + "\""));
            }
        }
    }

private:
    static const Member* find(const Shape& shape, std::string_view name) {
        const auto found =
            std::find_if(shape.members.begin(), shape.members.end(),
                         [name](const Member& member) { return name == member.name; });
        return found == shape.members.end() ? nullptr : &*found;
    }

    static std::string known(const Shape& shape) {
        std::string names;
        for (const Member& member : shape.members) {
            names += (names.empty() ? "; it may have " : ", ") + std::string(member.name);
        }
        return names;
    }

    void checkMember(const std::string& pointer, const Json& value, const Member& member,
                     bool isPatch) {
        if (!fits(member.holds, value)) {
            add(pointer, "member-kind",
                std::string("\"") + member.name + "\" is " + wordsOf(member.holds) + ", not " +
                    value.type_name());
        } else if (member.holds == Holds::object || member.holds == Holds::patch) {
            checkObject(pointer, *member.shape, isPatch || member.holds == Holds::patch);
        } else if (member.holds == Holds::list) {
            for (std::size_t i = 0; i < value.size(); ++i) {
                checkObject(elementOf(pointer, i), *member.shape);
            }
        } else if (!member.words.empty()) {
            checkWords(pointer, value, member);
        }
    }

    void checkWords(const std::string& pointer, const Json& value, const Member& member) {
        const Json texts = value.is_array() ? value : Json::array({value});
        for (std::size_t i = 0; i < texts.size(); ++i) {
            if (std::find(member.words.begin(), member.words.end(), texts[i]) ==
                member.words.end()) {
                std::string words;
                for (const char* word : member.words) {
                    words += (words.empty() ? "" : ", ") + std::string(word);
                }
                add(value.is_array() ? elementOf(pointer, i) : pointer, member.wordsCode,
                    std::string("\"") + member.name + "\" is one of " + words + ", not " +
                        texts[i].dump());
            }
        }
    }

    void add(const std::string& pointer, const char* code, const std::string& text) {
        mistakes.add(json.lineOf(pointer), code, text);
    }

    const JsonText& json;
    Mistakes& mistakes;
};

} // namespace

void checkShape(const JsonText& json, const std::string& pointer, const Shape& shape,
                Mistakes& mistakes) {
    ShapeCheck(json, mistakes).checkObject(pointer, shape);
}

} // namespace sandbox::check
