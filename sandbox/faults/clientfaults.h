#pragma once

#include <string>
#include <vector>

#include "sandbox/common/folders.h"
#include "sandbox/faults/fault.h"

/// The faults of a step that the client's own side carries out, its modules and its HTTP. The
/// sandbox lays them into clientfaults.json ahead of the step; the host tells there how far it
/// has come, and the modules look at each call. Any thread, any process of the run.
namespace sandbox {

/// Puts the faults that the client's side carries out into the run's file; without one there is
/// no such file. Throws std::runtime_error when it cannot be written.
void layOutClientFaults(const Folders& folders, std::size_t phase,
                        const std::vector<Fault>& faults);

/// Whether the client's side carries it out.
bool isOfClient(const Fault& fault);

/// The host is about to do its tick of that number. True when a fault begins or ends with it.
bool reachTick(const Folders& folders, std::uint32_t tick);

/// Requests of this step that a fault has lost, each with the chain that waits for its answer: for
/// ever. Those of the file channel are of no chain.
std::size_t lostChains();

/// What the file says; none of the modules' faults holds without it.
class ClientFaults {
public:
    /// As the file of the run that this process is the host of stands now.
    static ClientFaults read();

    /// Those of that name that hold now; also such that wait for their request.
    std::vector<Fault> all(const std::string& name) const;

    /// The fault has taken effect: the first time in the step, it goes to the log of the faults.
    void met(const Fault& fault) const;

    /// Whether one of that name holds now; all that do have taken effect.
    bool meets(const std::string& name) const;

    /// Counts a request of the path; a fault that drops it, which is then logged.
    bool drops(const std::string& url) const;

private:
    std::size_t phase = 0;
    std::vector<Fault> faults;
};

} // namespace sandbox
