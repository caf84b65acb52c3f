#pragma once

#include <map>
#include <optional>
#include <string>

#include "sandbox/report/kelvarrun.h"
#include "sandbox/report/knowledge.h"

namespace sandbox::report {

/// What stands at the client's paths ahead of a run: in the beginning what the scenario tells,
/// then what the runs and the observations leave of that. Walks forward, run by run. One thread.
class Standing {
public:
    struct Found {
        enum class File { untold, absent, there };
        File file = File::untold;
        std::optional<std::string> version{}; ///< empty: it has none; nothing: not told
    };

    /// `knowledge` outlives it.
    explicit Standing(const Knowledge& knowledge);

    /// The run is about to begin: what was written to the version store until then stands.
    void reach(const KelvarRun& run);
    /// The run is over: its files stand, as far as what became of them is told.
    void pass(const KelvarRun& run);
    /// Somebody else may have written there.
    void forget(const std::string& path);

    Found at(const std::string& path) const;

private:
    struct Entry {
        Found::File file = Found::File::untold;
        bool isKindTold = false; ///< whether the next two hold
        bool isPe = false;
        std::string version; ///< of its resource
    };

    void passRow(const Material& row, const Planned& planned, const KelvarRun& run);

    const Knowledge& known;
    std::map<std::string, Entry> entries; ///< by comparable path
    std::map<std::string, std::string> store;
    bool isStoreTold = true;
    std::size_t nextEvent = 0;
};

} // namespace sandbox::report
