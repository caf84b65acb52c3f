#pragma once

#include "host/iupdatekelvar.h"
#include "host/ixtrayplugin.h"

/// The three exports of xrefresher.dll; its only ones (see xrefresher.def).
extern "C" {

/// A new plug-in object, null when there is no memory. It is never freed: it lives as
/// long as the process. Call start once, then tick again and again, on one thread.
xtray::IXTrayPlugin* CreateUpdatePlugin();

/// A new version service, null when there is no memory. Free it with release. Any thread.
XRefresher::IUpdateKelvar* GetUpdateKelvar();

/// Starts the update channel's own loop on a thread that lives as long as the process:
/// a first check after 30 seconds, then one every 5 minutes, without any tick. Always 0.
/// Another call starts no second loop.
int StartKelvarService();
}
