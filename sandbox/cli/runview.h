#pragma once

#include <map>
#include <string>
#include <vector>

#include "sandbox/cli/console.h"
#include "sandbox/cli/rowtracker.h"
#include "sandbox/cli/sections.h"
#include "sandbox/cli/upgradeview.h"
#include "sandbox/server/updateplatform.h"

namespace sandbox {

/// Shows a run as it goes: the conversation, the materials that are filtered out, the
/// downloads, each file as it is placed, the programs and the notification. One thread.
class RunView {
public:
    /// With more materials than `detailLimit` only sums are shown.
    /// `background` are programs that other channels start.
    RunView(Console& console, const std::vector<const BuiltMaterial*>& offered,
            const BuiltUpgrade& upgrade, std::vector<std::string> background);

    void platform(const PlatformEvent& event);
    void row(const Row& row);
    void host(const nlohmann::json& event);
    void log(const std::string& text) { upgrade.log(text); }
    /// A run of the Kelvar channel begins, or has ended.
    void beginRun() { sections.beginRun(); }
    void endRun();
    /// The run is over: sums that are still to be told.
    void end();

    /// The offered material of that file; nullptr for any other.
    const BuiltMaterial* byFileId(const std::string& fileId) const;

private:
    void section(const std::string& title);
    void program(const nlohmann::json& event);
    void transfer(const PlatformEvent& event);
    void finishTransfer();

    Console& console;
    Sections sections;
    UpgradeView upgrade;
    std::vector<std::string> background;
    std::map<std::string, const BuiltMaterial*> materials; ///< by file id
    std::vector<std::size_t> widths;                       ///< of name and path
    bool detailed = true;
    std::string transferring; ///< file id
    std::uint64_t sent = 0;
    std::size_t transfers = 0;
    std::uint64_t transferredBytes = 0;
    std::map<RowState, std::size_t> settled;
};

} // namespace sandbox
