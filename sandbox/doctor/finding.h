#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

/// What an examination of a client finds. Plain values.
namespace sandbox::doctor {

enum class Severity {
    fault,  ///< the client is not as it should be
    notice, ///< worth knowing; nothing is broken by it alone
};

/// What kind of finding it is. The names that programs get are in the table of kinds.
enum class Code {
    unreadableFile,
    strangeFile,
    moduleMissing,
    listMissing,
    listUnreadable,
    listDamaged,
    listOutside,
    listDouble,
    listFileMissing,
    listContent,
    listSize,
    listVersion,
    listKind,
    versionsUnreadable,
    versionForm,
    versionKey,
    versionFileMissing,
    versionShadowed,
    channelVersion,
    settingsUnreadable,
    settingNoJson,
    settingKind,
    paddingOutside,
    paddingDouble,
    waitingGone,
    waitingChanged,
    waitingNotScheduled,
    delayedUnreadable,
    delayedDamaged,
    delayedOutside,
    delayedForeign,
    delayedDelete,
    delayedDouble,
    delayedSourceGone,
    delayedUnlisted,
    updateLeftover,
    updateForeign,
    transferLeftover,
    tempLeftover,
    packageFile,
    packagePending,
    fileInUse,
};

struct Kind {
    Code code;
    const char* name; ///< stable, for programs
    Severity severity;
    const char* means;
    const char* remedy;
};

std::span<const Kind> allKinds();
const Kind& kindOf(Code code);

struct Finding {
    Code code;
    std::string file; ///< what it is about: a client path, or the name of a list or setting
    std::string what; ///< the fact, in one line that names the file
};

/// A file that some program keeps open. Told, and only a finding where `fileInUse` says so.
struct InUse {
    std::string file;
    std::string by;
    bool replaceWaits = false;
};

struct Report {
    std::vector<Finding> findings;
    std::vector<InUse> inUse;
    std::vector<std::string> unseen; ///< where could not be looked, and why
    std::size_t files = 0;           ///< files of the client that were read
    std::size_t listed = 0;          ///< entries of filelist.xml that were compared

    void add(Code code, const std::string& file, const std::string& what) {
        findings.push_back({code, file, what});
    }
};

} // namespace sandbox::doctor
