#include "sandbox/modules/xnbase/listener.h"
#include "sandbox/modules/xnbase/runprocess.h"
#include "sandbox/modules/xnbase/task.h"
#include "sandbox/modules/xnbase/transfers.h"

extern "C" bool sandboxIdle() {
    // In the order in which work moves on: a finished transfer is first with the delivery.
    return sandbox::Transfers::instance().idle() && sandbox::deliveryThread().idle() &&
           sandbox::taskThread().idle() && !sandbox::startsProgram();
}

static_assert(std::is_same_v<decltype(&sandboxIdle), sandbox::Idle>);
