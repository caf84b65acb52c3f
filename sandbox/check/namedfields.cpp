#include "sandbox/check/scenarioparts.h"

namespace sandbox::check {
namespace {

using Json = nlohmann::json;

class FieldCheck {
public:
    FieldCheck(const JsonText& whole, const NamedFields& known, Mistakes& found)
        : scenario(whole), fields(known), mistakes(found) {}

    /// Names and texts may ask at any depth.
    void checkValue(const std::string& pointer, const Json& value) {
        if (value.is_string()) {
            checkText(pointer, value.get_ref<const std::string&>());
        } else if (value.is_array()) {
            for (std::size_t i = 0; i < value.size(); ++i) {
                checkValue(elementOf(pointer, i), value[i]);
            }
        } else if (value.is_object()) {
            for (const auto& [name, member] : value.items()) {
                checkText(memberOf(pointer, name), name);
                checkValue(memberOf(pointer, name), member);
            }
        }
    }

private:
    /// "{name.field}"; behind one that is none nothing is asked for.
    void checkText(const std::string& pointer, const std::string& text) {
        for (std::size_t open = 0; (open = text.find('{', open)) != text.npos;) {
            const std::size_t close = text.find('}', open);
            const std::size_t dot = text.rfind('.', close);
            if (close == text.npos || dot == text.npos || dot < open) {
                return;
            }
            checkField(pointer, text.substr(open + 1, dot - open - 1),
                       text.substr(dot + 1, close - dot - 1));
            open = close + 1;
        }
    }

    void checkField(const std::string& pointer, const std::string& name, const std::string& field) {
        const auto thing = fields.find(name);
        if (thing == fields.end()) {
            add(pointer, "there is no material or file \"" + name + "\"");
        } else if (thing->second.count(field) == 0) {
            add(pointer, "\"" + name + "\" has no \"" + field + "\"");
        }
    }

    void add(const std::string& pointer, const std::string& text) {
        mistakes.add(scenario.lineOf(pointer), "name-unknown", text);
    }

    const JsonText& scenario;
    const NamedFields& fields;
    Mistakes& mistakes;
};

} // namespace

void checkNamedFields(const JsonText& scenario, const std::string& pointer,
                      const NamedFields& fields, Mistakes& mistakes) {
    const Json::json_pointer place(pointer);
    if (scenario.value().contains(place)) {
        FieldCheck(scenario, fields, mistakes).checkValue(pointer, scenario.value().at(place));
    }
}

} // namespace sandbox::check
