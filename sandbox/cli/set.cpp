#include "sandbox/cli/set.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <string_view>

#include "sandbox/cli/setnames.h"
#include "sandbox/common/jsonfile.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

/// The members of `change` that go into the one file or the other.
void applyTo(Json& file, const Json& change, bool settings) {
    for (const auto& [key, value] : change.items()) {
        const NameToSet& name = nameToSet(key);
        if (name.isSetting != settings) {
            continue;
        }
        if (settings && value.is_null()) {
            file.erase(key);
        } else {
            name.set(file, key, value, name.values);
        }
    }
}

void update(const std::filesystem::path& file, const Json& change, bool settings) {
    if (!updateJson(file, [&](Json& json) { applyTo(json, change, settings); })) {
        const bool isDamaged =
            std::filesystem::exists(file) && !readJson(file).value_or(Json()).is_object();
        throw std::runtime_error(file.string() +
                                 (isDamaged ? " holds no JSON object" : " cannot be written"));
    }
}

bool touches(const Json& change, bool settings) {
    return std::any_of(setNames().begin(), setNames().end(), [&](const NameToSet& name) {
        return name.isSetting == settings && change.contains(name.key);
    });
}

/// What is no number stays a text, and is refused as one.
Json readNumber(const NameToSet& name, const std::string& text) {
    std::uint64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    if (read.ec == std::errc::result_out_of_range) {
        refuseToSet(name.key, text, "a number of 64 bits at most");
    }
    return read.ec == std::errc() && read.ptr == end ? Json(number) : Json(text);
}

Json readList(std::string_view text) {
    Json list = Json::array();
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(','), text.size());
        list.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return list;
}

Json readValue(const NameToSet& name, const std::string& text) {
    switch (name.form) {
    case SetForm::number:
        return readNumber(name, text);
    case SetForm::list:
        return readList(text);
    default:
        return text;
    }
}

} // namespace

void checkSet(const Json& change) {
    for (const bool settings : {false, true}) {
        Json tried = Json::object();
        applyTo(tried, change, settings);
    }
}

void applySet(const Folders& folders, const Json& change) {
    checkSet(change); // so that a wrong member leaves both files alone
    if (touches(change, false)) {
        update(folders.config(), change, false);
    }
    if (touches(change, true)) {
        update(folders.settings(), change, true);
    }
}

Json readChange(const std::vector<std::string>& arguments) {
    Json change = Json::object();
    for (const std::string& argument : arguments) {
        const std::size_t sign = argument.find('=');
        if (sign == std::string::npos) {
            throw std::runtime_error("\"" + argument + "\" is not of the form KEY=VALUE");
        }
        const std::string key = argument.substr(0, sign);
        change[key] = readValue(nameToSet(key), argument.substr(sign + 1));
    }
    return change;
}

std::string namesToSet() {
    std::string lines;
    for (const NameToSet& name : setNames()) {
        lines += std::string("  ") + name.key + ": " + name.values + "\n";
    }
    return lines;
}

} // namespace sandbox
