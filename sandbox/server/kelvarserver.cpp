#include "sandbox/server/kelvarserver.h"

#include <algorithm>

#include "sandbox/server/answers.h"
#include "sandbox/server/storage.h"

namespace sandbox {

void KelvarServer::beginRun(const Offer& offered, const ExpectedRun& wanted) {
    offer = offered;
    run = wanted;
    asked = 0;
    fetched.clear();
}

void KelvarServer::endRun() {
    for (std::size_t i = asked; i < run.questions; ++i) {
        complain(std::string(conversation[i].name) + ": never asked");
    }
}

std::optional<std::size_t> KelvarServer::questionOf(const std::string& path) {
    const auto* found =
        std::find_if(conversation.begin(), conversation.end(),
                     [&](const Question& question) { return path == question.path; });
    if (found == conversation.end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(found - conversation.begin());
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
    if (asked >= run.questions) {
        complain(name + ": asked after the last question that was expected");
    } else if (question != asked) {
        complain((name + ": out of order, expected ").append(conversation[asked].name));
    }
}

Answered KelvarServer::answer(std::size_t question, const Headers& headers, const std::string& body,
                              const std::string& address) {
    const std::string name(conversation[question].name);
    checkOrder(question, name);
    for (const std::string& wrong :
         {headerDifference(headers), bodyDifference(expectedBody(question, offer, run), body)}) {
        if (!wrong.empty()) {
            complain(std::string(name).append(": ").append(wrong));
        }
    }
    asked = std::max(asked, question + 1);
    const auto fault = run.answerFaults.find(name);
    return answeredWith(fault == run.answerFaults.end() ? AnswerFault{} : fault->second,
                        answerTo(question, offer, run, address));
}

std::string KelvarServer::fileIdOf(const std::string& path) const {
    const std::string folder = run.testSwitch ? "/storage-test/" : "/storage/";
    const std::string id = path.rfind(folder, 0) == 0 ? path.substr(folder.size()) : "";
    return isPlainName(id) ? id : "";
}

TransferFault KelvarServer::fetch(const std::string& fileId, const Headers& headers) {
    fetched.push_back(fileId);
    if (const std::string surplus = surplusHeaders(headers); !surplus.empty()) {
        complain("GET " + fileId + ": surplus headers " + surplus);
    }
    TransferFault fault;
    if (const auto cut = run.cutFiles.find(fileId); cut != run.cutFiles.end()) {
        fault.stopAt = cut->second;
    }
    return fault;
}

} // namespace sandbox
