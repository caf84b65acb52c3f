#include "xupdatemgr.h"

#include "host/hostmodules.h"
#include "host/log.h"

bool XUpdateMgr::addItem(const std::shared_ptr<IUpdate>& item, bool startItem) {
    if (!item) {
        return false;
    }
    MutexLock guard(lock);
    (startItem ? startItems : tickItems).push_back(item);
    return item->init() == 0;
}

void XUpdateMgr::startUpdate() {
    Items items;
    {
        MutexLock guard(lock);
        items = startItems;
    }
    doItem(items);
}

void XUpdateMgr::tickUpdate() {
    Items items;
    {
        MutexLock guard(lock);
        items = tickItems;
    }
    doItem(items);
}

void XUpdateMgr::doItem(const Items& items) {
    if (hostmodules::isMuteMode() != 0) {
        XLOG(logProgress, "XUpdateMgr doItem isMugeMode return ");
        return;
    }
    for (const std::shared_ptr<IUpdate>& item : items) {
        if (item) {
            item->checkUpdate();
        }
    }
}
