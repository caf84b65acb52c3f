#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "sandbox/faults/fault.h"

namespace sandbox {

/// The faults of one step on the servers' side.
struct RunFaults {
    using Sink = std::function<void(const Fault&, std::size_t attempt)>;

    std::vector<Fault> faults;
    Sink tookEffect; ///< called on threads of the server, one call at a time
};

/// Which request meets which fault. One thread at a time.
class ServerFaults {
public:
    struct Met {
        Fault fault;
        std::size_t run = 0;    ///< since the server stands
        std::size_t number = 0; ///< of the fault in the run
        std::size_t attempt = 0;
    };

    void beginRun(RunFaults of);

    /// Counts a request of what is called `on`; the fault that it meets.
    std::optional<Met> next(const std::string& on);

    /// A fault of an earlier run, met by a request that outlived it, is passed over.
    void tookEffect(const Met& met);

    /// The faults that never took effect, by their titles.
    std::vector<std::string> missed() const;

private:
    RunFaults run;
    std::size_t runs = 0;
    std::vector<bool> seen; ///< of each fault
    std::map<std::string, std::size_t> requests;
};

} // namespace sandbox
