#include "sandbox/modules/xnbase/task.h"

#include "host/xnbase.h"
#include "sandbox/common/events.h"

sandbox::Worker& sandbox::taskThread() {
    static Worker& thread = *new Worker("postTask");
    return thread;
}

extern "C" void postTask(int /*kind*/, XN::Task* task) {
    if (!task) {
        sandbox::emitFailure("postTask", "no task");
        return;
    }
    sandbox::emit({{"kind", "task"}});
    sandbox::taskThread().post([held = sandbox::holdReference(task)] { held->run(); });
}

static_assert(std::is_same_v<decltype(&postTask), xnbase::postTask>);
