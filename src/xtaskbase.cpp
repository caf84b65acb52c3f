#include "xtaskbase.h"

#include <utility>

void XTaskBase::check(const XBatchGetMaterialMetaData* data, FinishCallback finish) {
    if (next) {
        next->check(data, std::move(finish));
    }
}

void XTaskBase::check(FinishCallback finish) {
    if (next) {
        next->check(std::move(finish));
    }
}

std::shared_ptr<IXTaskBase> XTaskBase::setNext(std::shared_ptr<IXTaskBase> task) {
    next = std::move(task);
    return next;
}

void XTaskBase::stop() {
    stopped = true;
    if (next) {
        next->stop();
    }
}
