#include "xupdate.h"

#include "host/hostmodules.h"

bool XUpdate::canCheck() {
    uc::IUserCenter* center = hostmodules::getUserCenter();
    if (!center) {
        return false;
    }
    uc::IUserState* token = center->tokenState();
    uc::IUserState* device = center->deviceState();
    uc::IUserState* service = center->serviceState();
    return token && device && service && token->isValid() && device->isValid() &&
           service->isValid();
}
