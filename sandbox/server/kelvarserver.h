#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "sandbox/server/requests.h"
#include "sandbox/server/upgradeoffer.h"

namespace sandbox {

/// The update platform's side of one run after the other: judges each question and fetch,
/// and answers it. One thread at a time.
class KelvarServer {
public:
    using Complain = std::function<void(const std::string&)>;

    explicit KelvarServer(Complain sink) : complain(std::move(sink)) {}

    void beginRun(const Offer& offered, const ExpectedRun& wanted);
    /// Complains about questions that never came.
    void endRun();

    /// The place in the conversation of a request's path.
    static std::optional<std::size_t> questionOf(const std::string& path);
    /// The same of its name.
    static std::optional<std::size_t> questionNamed(const std::string& name);
    std::string wordsOf(std::size_t question) const;

    /// Judges the question; the right answer. `address` is the server's own.
    std::string answer(std::size_t question, const Headers& headers, const std::string& body,
                       const std::string& address);

    /// The client does not get the right answer: what it asks now cannot be told.
    void loseConversation() { isLost = true; }
    bool hasLost() const { return isLost; }

    /// The file id of a storage address; empty when the path is none of this run's.
    std::string fileIdOf(const std::string& path) const;
    /// What the scenario calls it; empty for a file that is not on offer.
    std::string nameOf(const std::string& fileId) const;
    /// Takes a request for the file of that id.
    void fetch(const std::string& fileId, const Headers& headers);

    std::size_t questions() const { return earlier + asked; }
    const std::vector<std::string>& downloads() const { return fetched; }

private:
    void checkOrder(std::size_t question, const std::string& name);
    void endConversation();
    std::size_t expected() const {
        return conversationsEnded < run.questions.size() ? run.questions[conversationsEnded] : 0;
    }

    Complain complain;
    Offer offer;
    ExpectedRun run;
    std::size_t conversationsEnded = 0;
    std::size_t asked = 0;   ///< questions of the conversation, answered or not
    std::size_t earlier = 0; ///< those of the conversations before
    bool isLost = false;     ///< the conversation
    std::vector<std::string> fetched;
};

} // namespace sandbox
