#include "updatepkg/xupdatepkg.h"

#include "host/log.h"
#include "updatepkg/task/xtaskpkgcheck.h"
#include "updatepkg/task/xtaskpkgcondition.h"
#include "updatepkg/task/xtaskpkgdownload.h"
#include "updatepkg/task/xtaskpkginstall.h"
#include "updatepkg/xupdatepkgtrace.h"

int XUpdatePkg::init() {
    // Before the trace knows its owner: from then on a command may come on any thread.
    m_sender = std::make_shared<XUpdatePkgSender>();
    XUpdatePkgTrace::instance().setOwner(this);
    XTaskPkgCondition::loadLastCheckTime();
    return 1;
}

int XUpdatePkg::checkUpdate() {
    XLOG(logProgress, "update plugin, pkg, check update ...");
    const auto head = std::make_shared<XTaskPkgCondition>(m_sender);
    head->setNext(std::make_shared<XTaskPkgCheck>(true, m_sender))
        ->setNext(std::make_shared<XTaskPkgDownload>(m_sender))
        ->setNext(std::make_shared<XTaskPkgInstall>(true, m_sender));
    m_queue.addTask(head);
    return 0;
}

void XUpdatePkg::checkVersion() {
    XLOG(logProgress, "update plugin, pkg, check version ...");
    m_queue.stop();
    m_queue.addTask(std::make_shared<XTaskPkgCheck>(false, m_sender));
}

void XUpdatePkg::downloadPkg() {
    XLOG(logProgress, "update plugin, pkg, download pkg ...");
    m_queue.stop();
    m_queue.addTask(std::make_shared<XTaskPkgDownload>(m_sender));
}

void XUpdatePkg::installPkg() {
    XLOG(logProgress, "update plugin, pkg, install pkg ...");
    m_queue.stop();
    m_queue.addTask(std::make_shared<XTaskPkgInstall>(false, m_sender));
}

void XUpdatePkg::cancelDownload() {
    XLOG(logProgress, "update plugin, pkg, cancel download ...");
    m_queue.stop();
}
