#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "sandbox/server/answered.h"
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
    std::string wordsOf(std::size_t question) const;

    /// `address` is the server's own.
    Answered answer(std::size_t question, const Headers& headers, const std::string& body,
                    const std::string& address);

    /// The file id of a storage address; empty when the path is none of this run's.
    std::string fileIdOf(const std::string& path) const;
    /// Takes a request for the file of that id; what is to go wrong with it.
    TransferFault fetch(const std::string& fileId, const Headers& headers);

    std::size_t questions() const { return asked; }
    const std::vector<std::string>& downloads() const { return fetched; }

private:
    void checkOrder(std::size_t question, const std::string& name);

    Complain complain;
    Offer offer;
    ExpectedRun run;
    std::size_t asked = 0; ///< questions, answered or not
    std::vector<std::string> fetched;
};

} // namespace sandbox
