#pragma once

#include "platform/modules.h"

/// Whether the system is Wine: in places it answers otherwise than Windows is documented to.
inline bool onWine() {
    using namespace platform;
    return findExport(findModule(L"ntdll.dll"), "wine_get_version") != nullptr;
}
