#include "sandbox/common/config.h"

extern "C" int IsMuteMode() {
    return sandbox::readConfig().muteMode;
}
