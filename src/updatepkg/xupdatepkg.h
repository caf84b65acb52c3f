#pragma once

#include <memory>

#include "updatepkg/xupdatepkgsender.h"
#include "xtaskqueue.h"
#include "xupdate.h"

/// The channel of whole-client packages: finds, fetches and starts a setup program. A tick
/// builds a chain of condition, check, download and install; a command of the user
/// interface stops what runs and has one task instead. Lives as long as the process.
class XUpdatePkg final : public XUpdate {
public:
    /// 1 and no failure; nobody reads it.
    int init() override;
    int checkUpdate() override;

    // Commands. They return at once; any thread.
    void checkVersion();
    void downloadPkg();
    void installPkg();
    void cancelDownload();

private:
    std::shared_ptr<XUpdatePkgSender> m_sender;
    XTaskQueue m_queue;
};
