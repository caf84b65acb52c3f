#pragma once

namespace platform {

/// A loaded module. Borrowed: findModule adds no reference, loadModule adds one.
using ModuleHandle = void*;

/// The module of that file name, when it is already in the process; else null.
/// A bare name is found by the name that the module was loaded under; a name with a
/// folder ("xnplugins\\xrefresher.dll") is taken relative to the host's folder.
/// Adds no reference. Any thread.
ModuleHandle findModule(const wchar_t* name);

/// Loads a module by a plain load, looked for in the folder of the host's executable.
/// Null when it cannot be loaded. The caller owes one freeModule. Any thread.
ModuleHandle loadModule(const wchar_t* name);

/// Gives one reference back; null is ignored.
void freeModule(ModuleHandle module);

/// The address of an export; null when the module is null or has no such export.
void* findExport(ModuleHandle module, const char* name);

} // namespace platform
