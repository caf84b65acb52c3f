#pragma once

#include <optional>
#include <string>
#include <vector>

namespace sandbox::report {

/// What a line of the Kelvar channel, or one that it shares with others, says.
enum class Says {
    driven,
    gate,
    gateShut,
    fetch,
    request,
    responseError,
    noAnswer,
    storage,
    notForClient, ///< the three filters; value: hash
    notForSystem,
    upToDate,
    download,
    badDownloadName,
    haveLocal,
    fetches,
    noUrl,
    transfer,
    cannotOpen,
    transferFailed, ///< of any channel
    noFolder,
    moves,
    cannotMove,
    windowOpen, ///< of the package channel too
    moveAll,
    badMoveName,
    badPath,
    targetIsFolder,
    badMember,
    bigCabinet,
    cabinetFailed,
    sourceMissing,
    hashDiffers,
    notNewer,
    notNeeded,
    move,
    targetInUse,
    oldFileStays,
    replaceFailed,
    scheduled,
    scheduleFailed,
    takeBackFailed,
    oldFileLost,
    paddingCounts,
    waitingDeleted, ///< of an older schedule; value: path
    paddingNote,
    fileListCount,
    fileListFailed, ///< of the package channel too
    servicePack,
    versionTooLong,
    program,
    queueEnds, ///< of any channel
};

/// A line of the log with its values, without the blanks around them.
struct Saying {
    Says says;
    std::vector<std::string> values; ///< as many as the line has, empty ones included
};

/// Nothing for a line that tells no decision of the Kelvar channel.
std::optional<Saying> sayingOf(const std::string& text);

/// The words of a libcurl or Windows error number; empty for one that is not known here.
std::string transferErrorWords(const std::string& number);
std::string systemErrorWords(const std::string& number);

std::string trimmed(const std::string& text);

} // namespace sandbox::report
