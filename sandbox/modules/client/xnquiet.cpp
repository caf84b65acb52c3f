#include "sandbox/common/config.h"

extern "C" int IsMuteMode() {
    static const int mode = sandbox::readConfig().muteMode;
    return mode;
}
