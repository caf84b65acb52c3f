#pragma once

/// Tells the user interface of the package channel's events, through the notification
/// centre. Without the centre nobody is told. Any thread.
class XUpdatePkgSender {
public:
    /// The current offer. A text that does not fit its record ends the process.
    void sendUpgradeInfo();
    void sendDownloadStart();
    void sendDownloadProgress(int percent);
    /// The event looks the same after success and failure: `ok` is not told.
    void sendDownloadFinish(bool ok);
    void sendInstallFinish();
};
