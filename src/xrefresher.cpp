#include "xrefresher.h"

#include <new>

#include "updatekelvar/xkelvarservicerunner.h"
#include "xrefresherimp.h"
#include "xupdatekelvarservice.h"

xtray::IXTrayPlugin* CreateUpdatePlugin() {
    return new (std::nothrow) XRefresherImp;
}

XRefresher::IUpdateKelvar* GetUpdateKelvar() {
    return new (std::nothrow) XUpdateKelvarService;
}

int StartKelvarService() {
    XKelvarServiceRunner::instance().start();
    return 0;
}
