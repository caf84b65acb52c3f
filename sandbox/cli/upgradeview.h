#pragma once

#include <map>
#include <string>

#include <nlohmann/json.hpp>

#include "sandbox/cli/builtupgrade.h"
#include "sandbox/cli/notes.h"
#include "sandbox/cli/sections.h"
#include "sandbox/server/updateplatform.h"

namespace sandbox {

/// Shows the package channel, the file channel and the report that the client runs, as they
/// go. One thread; what it is made with outlives it.
class UpgradeView {
public:
    UpgradeView(Sections& lines, const BuiltUpgrade& upgrade);

    /// Whether the event was one of these channels.
    bool platform(const PlatformEvent& event);
    bool host(const nlohmann::json& event);
    void log(const std::string& text);
    /// The run is over: transfers that did not come to their end.
    void end();

private:
    void note(const PackageNote& told);
    void offered(const nlohmann::json& record);
    void tell(Mark mark, const char* what, const std::string& text);
    void transfer(const PlatformEvent& event);
    void endProgress();

    Sections& sections;
    const BuiltUpgrade& built;
    std::map<std::string, PlatformEvent> transfers; ///< of files, not yet whole
    std::string percent;                            ///< of the package; empty outside a transfer
};

} // namespace sandbox
