#include "sandbox/server/kelvarserver.h"

#include <algorithm>

#include "sandbox/server/answers.h"
#include "sandbox/server/storage.h"

namespace sandbox {
namespace {

template <class Predicate>
std::optional<std::size_t> indexOf(const Predicate& isWanted) {
    const auto* found = std::find_if(conversation.begin(), conversation.end(), isWanted);
    if (found == conversation.end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(found - conversation.begin());
}

} // namespace

void KelvarServer::beginRun(const Offer& offered, const ExpectedRun& wanted) {
    offer = offered;
    run = wanted;
    conversationsEnded = 0;
    asked = 0;
    earlier = 0;
    isLost = false;
    fetched.clear();
}

void KelvarServer::endRun() {
    while (conversationsEnded < run.questions.size()) {
        endConversation();
    }
}

void KelvarServer::endConversation() {
    const std::size_t last = isLost && !run.isExact ? 0 : expected();
    for (std::size_t i = asked; i < last; ++i) {
        complain(std::string(conversation[i].name) + ": never asked");
    }
    ++conversationsEnded;
    earlier += asked;
    asked = 0;
    isLost = false;
}

std::optional<std::size_t> KelvarServer::questionOf(const std::string& path) {
    return indexOf([&](const Question& question) { return path == question.path; });
}

std::optional<std::size_t> KelvarServer::questionNamed(const std::string& name) {
    return indexOf([&](const Question& question) { return name == question.name; });
}

std::string KelvarServer::wordsOf(std::size_t question) const {
    switch (question) {
    case 0:
        return run.version + " -> " + offer.version;
    case 1:
        return std::to_string(offer.materials.size()) + " materials, " +
               std::to_string(offer.modules.size()) + " modules";
    case 2:
        return "packet " + offer.version;
    case 3:
        return run.testSwitch ? "test storage" : "normal storage";
    default:
        return std::to_string(offer.materials.size()) + " rows";
    }
}

void KelvarServer::checkOrder(std::size_t question, const std::string& name) {
    if (question == 0 && asked > 0 && conversationsEnded + 1 < run.questions.size()) {
        endConversation();
    }
    if (isLost && !run.isExact) {
        return;
    }
    if (asked >= expected()) {
        complain(name + ": asked after the last question that was expected");
    } else if (question != asked && !isLost) {
        complain((name + ": out of order, expected ").append(conversation[asked].name));
    }
}

std::string KelvarServer::answer(std::size_t question, const Headers& headers,
                                 const std::string& body, const std::string& address) {
    const std::string name(conversation[question].name);
    checkOrder(question, name);
    const std::string difference =
        isLost ? "" : bodyDifference(expectedBody(question, offer, run), body);
    for (const std::string& wrong : {headerDifference(headers), difference}) {
        if (!wrong.empty()) {
            complain(std::string(name).append(": ").append(wrong));
        }
    }
    asked = std::max(asked, question + 1);
    return answerTo(question, offer, run, address);
}

std::string KelvarServer::fileIdOf(const std::string& path) const {
    const std::string folder = run.testSwitch ? "/storage-test/" : "/storage/";
    const std::string id = path.rfind(folder, 0) == 0 ? path.substr(folder.size()) : "";
    return isPlainName(id) ? id : "";
}

std::string KelvarServer::nameOf(const std::string& fileId) const {
    const auto found =
        std::find_if(offer.materials.begin(), offer.materials.end(),
                     [&](const OfferedMaterial& material) { return material.fileId == fileId; });
    return found == offer.materials.end() ? "" : found->name;
}

void KelvarServer::fetch(const std::string& fileId, const Headers& headers) {
    fetched.push_back(fileId);
    if (const std::string surplus = surplusHeaders(headers); !surplus.empty()) {
        complain("GET " + fileId + ": surplus headers " + surplus);
    }
}

} // namespace sandbox
