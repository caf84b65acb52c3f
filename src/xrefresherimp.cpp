#include "xrefresherimp.h"

#include <memory>

#include "updatekelvar/xupdatekelvar.h"

bool XRefresherImp::start(void* /*context*/) {
    manager.addItem(std::make_shared<XUpdateKelvar>(), false);
    manager.startUpdate();
    return true;
}

void XRefresherImp::tick() {
    manager.tickUpdate();
}
