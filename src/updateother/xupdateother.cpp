#include "updateother/xupdateother.h"

#include <memory>

#include "host/log.h"
#include "platform/clock.h"
#include "updateother/task/xtaskothercondition.h"
#include "updateother/task/xtaskotherrun.h"

int XUpdateOther::init() {
    otherLastTick = platform::tickCount();
    return 0;
}

int XUpdateOther::checkUpdate() {
    XLOG(logProgress, "update plugin, other, check update ... ");
    if (!canCheck()) {
        XLOG(logProgress, "update plugin, other, check update, can't check, so ignore");
        return -1;
    }
    const auto head = std::make_shared<XTaskOtherCondition>();
    head->setNext(std::make_shared<XTaskOtherRun>());
    queue.addTask(head);
    return 0;
}
