#include "sandbox/common/config.h"
#include "sandbox/faults/clientfaults.h"

extern "C" int IsMuteMode() {
    return sandbox::ClientFaults::read().meets("mute") ? 1 : sandbox::readConfig().muteMode;
}
