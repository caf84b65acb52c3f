#pragma once

#include <vector>

#include "platform/modules.h"

/// Loads the client's modules that a host has in its process from the start, in order,
/// and says on stderr which of them are missing. Called once, from main.
void loadClientModules();

/// The plug-in; null, after a message, when it is missing.
platform::ModuleHandle loadPlugin();

/// Address of an export of `module`; null, after a message that names `file`, when it is
/// missing.
void* requireExport(platform::ModuleHandle module, const char* file, const char* name);

/// The exports of that name in the client's modules that are in the process now.
std::vector<void*> exportsOfClientModules(const char* name);
