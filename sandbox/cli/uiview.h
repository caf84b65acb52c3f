#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include "sandbox/cli/console.h"
#include "sandbox/cli/notes.h"
#include "sandbox/common/folders.h"

namespace sandbox {

/// What a client's user interface shows of the package channel: the offer, the download and
/// what became of it. One thread.
class UiView {
public:
    UiView(const Folders& runFolders, Console& output) : folders(runFolders), console(output) {}

    /// The record of the text that event 100 brings and the store holds.
    void offer(const nlohmann::json& record);

    /// An event of the channel or a command to it.
    void note(const PackageNote& note);

private:
    void progress(const std::string& text);
    void finish();

    const Folders& folders;
    Console& console;
    std::string percent; ///< last told in this download
};

} // namespace sandbox
