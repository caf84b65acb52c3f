#include "sandbox/faults/fault.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace sandbox {
namespace {

using Json = nlohmann::json;

constexpr std::array<const char*, 4> ownMembers{"on", "attempt", "fault", "comment"};
constexpr std::array<const char*, 3> extendsForms{"ahead", "behind", "null"};

[[noreturn]] void refuse(const std::string& reason) {
    throw std::runtime_error("faults: " + reason);
}

unsigned placeOf(const std::string& on, const std::set<std::string>& files) {
    if (const auto place = fixedPlaceOf(on)) {
        return *place;
    }
    if (files.count(on) == 0) {
        std::string names;
        for (const std::string& name : fixedPlaces()) {
            names += name + ", ";
        }
        refuse("nothing is called \"" + on + "\"; known are " + names + "and the materials");
    }
    return placeFile;
}

const FaultKind& kindOf(const std::string& name, const std::string& on, unsigned place) {
    const FaultKind* kind = findFaultKind(name);
    if (kind == nullptr) {
        refuse("there is no fault \"" + name + "\"; known are " + faultNames(~placeStartState));
    }
    if ((kind->places & place) == 0) {
        refuse("\"" + name + "\" cannot stand on " + on + "; there can stand " + faultNames(place));
    }
    return *kind;
}

bool fits(const Parameter& parameter, const Json& value) {
    switch (parameter.kind) {
    case ParameterKind::number:
        return value.is_number_integer();
    case ParameterKind::text:
        return value.is_string();
    default:
        return value.is_boolean();
    }
}

/// Numbers beyond 64 bits with a sign would be others once they are read.
bool isWithin(const Range& range, const Json& number) {
    const bool isHuge = number.is_number_unsigned() &&
                        number.get<std::uint64_t>() > static_cast<std::uint64_t>(range.most);
    return !isHuge && number.get<std::int64_t>() >= range.least &&
           number.get<std::int64_t>() <= range.most;
}

void takeParameter(const Parameter& parameter, const Json& json, Fault& fault) {
    const std::string what = "\"" + fault.name + "\" on " + fault.on + ", \"" + parameter.name;
    if (json.contains(parameter.name)) {
        const Json& value = json.at(parameter.name);
        if (!fits(parameter, value)) {
            refuse(what + "\" is of the wrong kind: " + value.dump() + "; it is " +
                   parameter.meaning);
        }
        if (parameter.kind == ParameterKind::number && !isWithin(parameter.range, value)) {
            refuse(what + "\" is " + rangeWords(parameter.range) + ", not " + value.dump() + ": " +
                   parameter.meaning);
        }
        fault.parameters[parameter.name] = value;
    } else if (*parameter.byDefault != '\0') {
        fault.parameters[parameter.name] = Json::parse(parameter.byDefault);
    } else if (!parameter.isOptional) {
        refuse(what + "\" is missing; it is " + parameter.meaning);
    }
}

void checkMembers(const Json& json, const FaultKind& kind) {
    for (const auto& [key, value] : json.items()) {
        const auto isKey = [&name = key](const char* known) {
            return name == known;
        };
        const bool known =
            std::any_of(ownMembers.begin(), ownMembers.end(), isKey) ||
            std::any_of(kind.parameters.begin(), kind.parameters.end(),
                        [&](const Parameter& parameter) { return isKey(parameter.name); });
        if (!known) {
            refuse(std::string("\"").append(kind.name).append("\" takes no \"") + key + "\"");
        }
    }
}

/// What no kind of a parameter tells.
void checkValues(const Fault& fault) {
    if (fault.has("until") && fault.number("until") <= fault.number("from")) {
        refuse("\"" + fault.name + "\" on " + fault.on + " ends ahead of its begin: \"until\" is " +
               fault.parameters.at("until").dump());
    }
    if (fault.has("as") && std::find(extendsForms.begin(), extendsForms.end(), fault.text("as")) ==
                               extendsForms.end()) {
        refuse("\"extends\" is ahead, behind or null, not " + fault.text("as"));
    }
}

std::string textMember(const Json& json, const char* member) {
    if (!json.is_object() || !json.contains(member) || !json.at(member).is_string()) {
        refuse(std::string("each has a text \"") + member + "\": " + json.dump());
    }
    return json.at(member).get<std::string>();
}

Fault readFault(const Json& json, const std::set<std::string>& files) {
    Fault fault;
    fault.on = textMember(json, "on");
    fault.name = textMember(json, "fault");
    const FaultKind& kind = kindOf(fault.name, fault.on, placeOf(fault.on, files));
    checkMembers(json, kind);
    if (json.contains("attempt")) {
        const Json& attempt = json.at("attempt");
        if (!attempt.is_number_unsigned() || attempt == 0 || (kind.places & placeServed) == 0) {
            refuse("\"attempt\" of \"" + fault.name + "\" is no number of a request, from 1");
        }
        fault.attempt = attempt.get<std::size_t>();
    }
    for (const Parameter& parameter : kind.parameters) {
        takeParameter(parameter, json, fault);
    }
    checkValues(fault);
    return fault;
}

/// The one that leaves nothing for `fault`, of those ahead of it: one request meets one fault.
const Fault* hiderOf(const Fault& fault, const std::vector<Fault>& ahead) {
    const auto hides = [&fault](const Fault& first) {
        if (first.on != fault.on) {
            return false;
        }
        if ((fault.kind().places & placeServed) == 0) {
            return first.record() == fault.record();
        }
        // A request that the client's side loses is none of the server's.
        return (first.name == dropFault) == (fault.name == dropFault) &&
               (first.attempt == 0 || first.attempt == fault.attempt);
    };
    const auto found = std::find_if(ahead.begin(), ahead.end(), hides);
    return found == ahead.end() ? nullptr : &*found;
}

std::string valueText(const Json& value) {
    return value.is_string() ? value.get<std::string>() : value.dump();
}

} // namespace

std::string Fault::words() const {
    std::string whole;
    const std::string form = kind().words;
    for (std::size_t at = 0; at < form.size();) {
        const std::size_t open = form.find('{', at);
        whole += form.substr(at, open - at);
        const std::size_t close = form.find('}', open);
        if (open == std::string::npos || close == std::string::npos) {
            break;
        }
        whole += valueText(parameters.value(form.substr(open + 1, close - open - 1), Json()));
        at = close + 1;
    }
    return whole;
}

std::string Fault::title() const {
    std::string whole = name + " on " + on;
    whole += attempt == 0 ? "" : ", attempt " + std::to_string(attempt);
    if (has("from") && number("from") > 0) {
        whole += ", from tick " + std::to_string(number("from"));
    }
    return whole + (has("until") ? ", until tick " + std::to_string(number("until")) : "");
}

Json Fault::record() const {
    Json record = parameters;
    record["on"] = on;
    record["fault"] = name;
    record["words"] = words();
    return record;
}

std::vector<Fault> readFaults(const Json& list, const std::set<std::string>& files) {
    if (!list.is_array()) {
        refuse("no array: " + list.dump());
    }
    std::vector<Fault> faults;
    for (const Json& one : list) {
        Fault fault = readFault(one, files);
        if (const Fault* hider = hiderOf(fault, faults)) {
            refuse(fault.title() + " is never met: " + hider->title() + " stands ahead of it");
        }
        faults.push_back(std::move(fault));
    }
    return faults;
}

Json toJson(const std::vector<Fault>& faults) {
    Json list = Json::array();
    for (const Fault& fault : faults) {
        Json one = fault.parameters;
        one["on"] = fault.on;
        one["fault"] = fault.name;
        if (fault.attempt > 0) {
            one["attempt"] = fault.attempt;
        }
        list.push_back(std::move(one));
    }
    return list;
}

} // namespace sandbox
