#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace sandbox::report {

/// One of the five questions to the update platform.
struct Question {
    enum class Outcome { untold, answered, refused, empty };
    std::string name; ///< last element of its path
    std::string url;
    std::string body;
    Outcome outcome = Outcome::untold;
    std::string error;  ///< transport error, of a refused one
    std::string status; ///< HTTP status, of a refused one
    std::string fault;  ///< what the sandbox did to it, in words
    std::size_t line = 0;
};

/// A material that the client asked about, in the words of its question.
struct AskedMaterial {
    std::string id;
    std::string module;
    std::string version;
};

/// One side by side comparison that decided about a material.
struct Test {
    std::string what;
    std::string left; ///< empty where it is not told
    std::string op;
    std::string right;
    std::string verdict; ///< passed, failed, not asked, untold
    std::string from;    ///< who tells: log, scenario, ...; "order of the tests" for a conclusion
};

/// What became of a material, and the lines that say so.
struct Material {
    enum class Filter { passed, client, system, file };
    enum class Fetch { none, badName, there, fetched, failed };
    enum class Try {
        none,
        badName,
        badPath,
        isFolder,
        cabinet,
        missing,
        hash,
        version,
        untold,
        moved
    };

    // From the log.
    std::string md5;
    std::string fileId;
    std::string url;
    std::string target; ///< as told, "\" only; a schedule alone tells the whole path
    Filter filter = Filter::passed;
    Fetch fetch = Fetch::none;
    std::string fetchError;    ///< of a failed one, in words
    std::size_t fetchLine = 0; ///< the last one of its fetch that says no end
    Try tried = Try::none;
    std::array<std::string, 2> detail; ///< values of the line that refused it
    std::string lockedBy;              ///< error number of a target in use
    std::string failedBy;              ///< error number of the replace that failed
    std::string scheduleError;         ///< error number of the schedule that failed
    std::size_t failedTakeBacks = 0;   ///< of its group, told behind this one
    bool isScheduled = false;
    bool withItsGroup = false;  ///< was in place, and was to wait as its group does
    std::string stayedBy;       ///< error number of the take-back ahead of that wait
    bool groupEndsHere = false; ///< what follows is of another group
    bool isListed = false;      ///< its place among the materials is known
    std::size_t moveLine = 0;   ///< the last one of its move

    // Joined to it.
    std::string name; ///< in the scenario
    std::string id, module, version;
    std::string nameFrom; ///< who tells which material it is
    std::optional<std::string> group;
    std::string fault;

    // Concluded.
    std::string decision; ///< placed, waiting, refused, left, untold
    std::string reason;
    bool isOpen = false; ///< its lines end in its transfer or its move
    std::vector<std::string> notes;
    std::vector<Test> tests;

    /// Whether its move failed, which takes its group back.
    bool hasFailed() const {
        return (tried != Try::none && tried != Try::moved) || !failedBy.empty() ||
               (!lockedBy.empty() && !scheduleError.empty());
    }
    void refuse(const std::string& why) {
        decision = "refused";
        reason = why;
    }
    bool isInPlace() const {
        return tried == Try::moved && lockedBy.empty() && !hasFailed() && !isScheduled;
    }
};

struct Program {
    std::string name;
    std::string parameters;
    std::size_t line = 0;
    std::string outcome; ///< whether it started, or that it is not told
};

/// One run of the channel that got past its time gate.
struct KelvarRun {
    enum class Stage { fetch, download, move, record, ended };
    std::size_t number = 0; ///< in the log, from 1
    std::size_t firstLine = 0;
    std::size_t lastLine = 0;
    std::size_t toldFrom = 0; ///< lines that are told with it, up to and without the second
    std::size_t toldTo = 0;
    std::int64_t seenFrom = 0; ///< what others saw meanwhile, on the log's clock, likewise
    std::int64_t seenTo = 0;
    std::optional<std::int64_t> begin, end;
    bool beginsInMidRun = false;
    Stage stage = Stage::fetch;
    std::optional<bool> success; ///< nothing: the log ends before, or does not tell
    std::string endWords;        ///< why it ended as it did

    std::vector<Question> questions;
    bool asked = false; ///< the question for the materials is in the log
    std::vector<AskedMaterial> askedFor;
    std::string channel, clientVersion, targetVersion; ///< of the questions
    std::string storage;
    bool isOfferChanged = false; ///< a fault gave other rows than those of the scenario
    bool cameToDownload = false;
    std::vector<Material> materials;
    std::vector<std::size_t> order; ///< places in `materials`, as the client asked for them
    std::vector<std::size_t> tried; ///< places in `materials`, in the order of the moves
    std::optional<std::size_t> rows, groups, freeRows; ///< as the moves count them
    bool movesDone = false;
    bool groupsAreKnown = false;
    bool hasLostFiles = false; ///< an old file did not come back when its group was taken back
    bool isServicePack = false;
    std::vector<Program> programs;
    std::vector<std::string> versions; ///< what became of the version store, in words
    std::vector<std::string> notes;    ///< of the run as a whole
    std::vector<std::string> faults;
};

} // namespace sandbox::report
