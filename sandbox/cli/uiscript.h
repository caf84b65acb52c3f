#pragma once

#include <chrono>
#include <set>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "sandbox/cli/uiview.h"
#include "sandbox/common/folders.h"

namespace sandbox {

/// Does what a user would, a word after the other: "check", "download", "cancel", "install",
/// "ignore". Each is done when its answer has come: an offer, or word that the offered
/// version is installed; the end of the download with the package on disk, or, when
/// "cancel" follows, its first percent; the end of the download without the package; the
/// start of the setup; the version in the stored list. One thread.
class UiScript {
public:
    /// Throws std::runtime_error for a word that is none of these.
    UiScript(const Folders& runFolders, const std::vector<std::string>& words);

    /// Sends the command of the next word; false behind the last one.
    bool begin();

    /// Takes an observation of the host.
    void see(const nlohmann::json& event);

    /// Whether the current word's command has arrived, and the channel has carried it out.
    bool hasArrived() const { return arrived; }

    /// Whether the answer to the current word has come.
    bool isAnswered() const;

    /// What is wrong with the answer, or, before it has come, what did not; empty for
    /// nothing.
    std::string fault() const;

private:
    bool is(const char* wanted) const { return word == wanted; }
    bool isToBeCancelled() const;
    bool has(int code) const { return codes.count(code) != 0; }
    std::string awaited() const;

    const Folders& folders;
    const std::vector<std::string> all;
    std::size_t next = 0;
    std::string word;
    bool arrived = false;   ///< see hasArrived
    bool confirmed = false; ///< an installation that needs no event
    bool listed = false;    ///< the list of ignored versions was stored
    std::set<int> codes;    ///< of events; for "cancel" since its download began
};

} // namespace sandbox
