#include "sandbox/report/question.h"

#include <nlohmann/json.hpp>

namespace sandbox::report {
namespace {

using Json = nlohmann::json;

/// The text at a path of members; empty for anything else.
std::string textAt(const Json& json, const char* path) {
    const Json::json_pointer pointer(path);
    return json.contains(pointer) && json[pointer].is_string() ? json[pointer].get<std::string>()
                                                               : "";
}

/// A sink may have put the line feed at the end into other characters.
Json bodyOf(const std::string& body) {
    const std::size_t end = body.rfind('}');
    return end == std::string::npos ? Json() : Json::parse(body.substr(0, end + 1), nullptr, false);
}

/// Whether the whole body is "null": there is nothing to ask for.
bool asksForNothing(const std::string& body) {
    return body.compare(0, 4, "null") == 0 && body.find_first_of("{[") == std::string::npos;
}

void readMaterials(const Json& body, KelvarRun& run) {
    for (const Json& key : body.value("keys", Json::array())) {
        run.askedFor.push_back({textAt(key, "/key/material_id/id"),
                                textAt(key, "/key/material_id/module_id/id"),
                                textAt(key, "/key/ver")});
    }
}

} // namespace

void ask(KelvarRun& run, const std::string& url, const std::string& body, std::size_t line) {
    Question question;
    question.name = url.substr(url.rfind('/') + 1);
    question.url = url;
    question.body = body;
    question.line = line;
    const Json json = bodyOf(body);
    if (question.name == "GetUpgradePacket" && json.is_object()) {
        run.channel = textAt(json, "/channel_code");
        run.clientVersion = textAt(json, "/version");
    } else if (question.name == "GetFullPacketDiff" && json.is_object()) {
        run.targetVersion = textAt(json, "/target_ver");
    } else if (question.name == "BatchGetMaterialMeta") {
        run.asked = json.is_object() || asksForNothing(body);
        if (json.is_object() && json.contains("keys") && json["keys"].is_array()) {
            readMaterials(json, run);
        }
    }
    run.questions.push_back(std::move(question));
}

std::string unansweredOf(const std::string& line) {
    constexpr const char* holders[][2] = {{"upgradePacketData", "GetUpgradePacket"},
                                          {"fullPacketDiffData", "GetFullPacketDiff"},
                                          {"getPacketMeta", "GetPacketMeta"},
                                          {"fileStorageAddr", "GetFileStorageAddr"}};
    for (const auto& [holder, name] : holders) {
        if (line.find(holder) != std::string::npos) {
            return name;
        }
    }
    return "BatchGetMaterialMeta";
}

std::string noAnswerWords(const KelvarRun& run, const std::string& unanswered) {
    if (run.questions.empty() || run.questions.back().name != unanswered) {
        // Without an address there is no question to be seen.
        return run.questions.empty() && run.beginsInMidRun
                   ? unanswered + " has no usable answer; the log begins behind the question"
                   : "no address of the update platform for " + unanswered;
    }
    const Question& last = run.questions.back();
    switch (last.outcome) {
    case Question::Outcome::refused:
        return last.error == "0"
                   ? last.name + " was answered with status " + last.status
                   : last.name + " got no whole answer, transport error " + last.error;
    case Question::Outcome::answered:
        return last.name + " was answered for another number of materials than asked";
    default:
        return last.name + " got an empty answer";
    }
}

} // namespace sandbox::report
