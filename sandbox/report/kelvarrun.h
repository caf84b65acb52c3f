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
    std::string from;    ///< who tells: log, scenario, ...; "by the order" for a conclusion
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
    std::string target; ///< as told, "\" only, relative to the client
    Filter filter = Filter::passed;
    Fetch fetch = Fetch::none;
    std::string fetchError; ///< of a failed one, in words
    std::size_t fetchLine = 0;
    Try tried = Try::none;
    std::array<std::string, 2> detail; ///< values of the line that refused it
    std::string lockedBy;              ///< error number of a target in use
    std::string failedBy;              ///< error number of the replace that failed
    std::string scheduleError;         ///< error number of the schedule that failed
    std::size_t failedTakeBacks = 0;   ///< of its group, told behind this one
    bool isScheduled = false;
    bool withItsGroup = false;  ///< was in place, taken back and scheduled
    bool groupEndsHere = false; ///< what follows is of another group
    bool isListed = false;      ///< its place among the materials is known
    std::size_t moveLine = 0;

    // Joined to it.
    std::string name; ///< in the scenario
    std::string id, module, version;
    std::string nameFrom; ///< who tells which material it is
    std::optional<std::string> group;
    std::string fault;

    // Concluded.
    std::string decision; ///< placed, waiting, refused, left, untold
    std::string reason;
    std::vector<std::string> notes;
    std::vector<Test> tests;

    bool hasFailed() const {
        return (tried != Try::none && tried != Try::moved) || !failedBy.empty() ||
               (!lockedBy.empty() && !isScheduled);
    }
    void refuse(const std::string& why) {
        decision = "refused";
        reason = why;
    }
    bool isInPlace() const { return tried == Try::moved && !hasFailed() && !isScheduled; }
};

struct Program {
    std::string name;
    std::string parameters;
    std::size_t line = 0;
    std::string outcome; ///< "started", "no such program", or that it is not told
};

/// One run of the channel that got past its time gate.
struct KelvarRun {
    enum class Stage { fetch, download, move, record, ended };
    std::size_t number = 0; ///< in the log, from 1
    std::size_t firstLine = 0;
    std::size_t lastLine = 0;
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
    std::vector<Material> materials;
    std::vector<std::size_t> order; ///< places in `materials`, as the client asked for them
    std::vector<std::size_t> tried; ///< places in `materials`, in the order of the moves
    std::optional<std::size_t> groups, freeRows;
    bool movesDone = false;
    bool groupsAreKnown = false;
    bool isServicePack = false;
    std::vector<Program> programs;
    std::vector<std::string> versions; ///< entries of the version store that it wrote
    std::vector<std::string> notes;    ///< of the run as a whole
    std::vector<std::string> faults;
};

} // namespace sandbox::report
