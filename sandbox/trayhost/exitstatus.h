#pragma once

/// Exit statuses of the tray host, beside those that the command line's parser gives
/// for a wrong command (100 and above).
enum ExitStatus : int {
    exitDone = 0,
    exitFailed = 1,      ///< an exception reached the host
    exitMissing = 2,     ///< the plug-in, one of its exports or the version store
    exitLimit = 3,       ///< the limit came before the wanted runs had ended
    exitNotStarted = 4,  ///< the plug-in's start answered false
    exitStillBusy = 5,   ///< work was still going on when the host had to leave
    exitTaken = 6,       ///< another host runs in the client's folder
    exitSignature = 255, ///< set by the plug-in itself: a module's signature is wrong
};
