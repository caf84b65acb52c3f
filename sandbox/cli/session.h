#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "sandbox/cli/clientsystem.h"
#include "sandbox/cli/console.h"
#include "sandbox/cli/expectation.h"
#include "sandbox/cli/hostrun.h"
#include "sandbox/cli/scenario.h"
#include "sandbox/cli/serverfeed.h"
#include "sandbox/cli/sessionreport.h"

namespace sandbox {

/// One scenario from its layout to its last phase, shown as it goes. One thread.
class Session {
public:
    /// The system, and its programs and modules in `binaries`; it outlives the object.
    Session(Scenario scenario, std::string scenarioFile, ClientSystem& system,
            std::filesystem::path binaries, Console& console);
    /// Ends the programs that keep files in use and the system, unless they are to go on.
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Lays out and carries out the first `phases` phases; whether each one ended as the
    /// scenario expects. Throws std::exception when the sandbox itself fails.
    bool run(std::size_t phases);

    /// Lays out and keeps the client's host running, on what the first run's platform has,
    /// until the user ends it, with so many milliseconds between its ticks; whether it ended in
    /// order.
    bool host(std::uint32_t interval);

    void keepHolders() { keep = true; }

    /// What is to be told to programs of what was carried out.
    const SessionReport& told() const { return report; }

private:
    using Offered = std::vector<const BuiltMaterial*>;

    void layOut();
    void build();
    void hold();
    void describe();
    Offered offeredIn(const Phase& phase) const;
    void serve(const Phase& phase);
    void beginFaults(const Phase& phase);
    RunFaults serverFaults(const Phase& phase);
    void endFaults(const Phase& phase, std::vector<std::string>& complaints);
    ScriptHands hands();
    PhaseFacts runClient(const Phase& phase);
    PhaseFacts restart();
    bool conclude(const Phase& phase, const PhaseFacts& facts);
    void showSummary(const PhaseFacts& facts);

    Scenario scenario;
    std::string scenarioFile;
    ClientSystem& system;
    const Folders& folders;
    std::filesystem::path binaries;
    Console& console;
    bool keep = false;
    bool hasBegun = false; ///< until then the folder's system is somebody else's
    ServerFeed feed;
    std::unique_ptr<UpdatePlatform> platform; ///< puts into the feed, so it goes first
    std::vector<BuiltMaterial> materials;
    BuiltUpgrade upgrade; ///< of the current phase
    std::unique_ptr<Expectation> expectation;
    std::size_t phasesDone = 0;
    SessionReport report;
};

} // namespace sandbox
