#include "updatekelvar/xupdatekelvar.h"

#include <memory>

#include "host/log.h"
#include "updatekelvar/task/xtaskkelvarcondition.h"
#include "updatekelvar/task/xtaskkelvardownload.h"
#include "updatekelvar/task/xtaskkelvarfetch.h"
#include "updatekelvar/task/xtaskkelvarmove.h"

int XUpdateKelvar::init() {
    XTaskKelvarCondition::loadLastCheckTime();
    return 0;
}

int XUpdateKelvar::checkUpdate() {
    XLOG(logProgress, "update plugin, kelvar, check update ... ");
    const auto head = std::make_shared<XTaskKelvarCondition>();
    head->setNext(std::make_shared<XTaskKelvarFetch>())
        ->setNext(std::make_shared<XTaskKelvarDownload>())
        ->setNext(std::make_shared<XTaskKelvarMove>());
    queue.addTask(head);
    return 0;
}

void XUpdateKelvar::event2(void* /*argument*/) {
    checkUpdate();
}
