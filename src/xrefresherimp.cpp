#include "xrefresherimp.h"

#include <memory>

#include "updatefile/xupdatefile.h"
#include "updatekelvar/xupdatekelvar.h"
#include "updateother/xupdateother.h"
#include "updatepkg/xupdatepkg.h"
#include "updatestatistic/xupdatestatistic.h"

bool XRefresherImp::start(void* /*context*/) {
    // A channel is driven whatever its addItem answers: that of the package channel is false.
    manager.addItem(std::make_shared<XUpdatePkg>(), false);
    manager.addItem(std::make_shared<XUpdateFile>(), true);
    manager.addItem(std::make_shared<XUpdateKelvar>(), false);
    manager.addItem(std::make_shared<XUpdateOther>(), false);
    manager.addItem(std::make_shared<XUpdateStatistic>(), false);
    manager.startUpdate();
    return true;
}

void XRefresherImp::tick() {
    manager.tickUpdate();
}
