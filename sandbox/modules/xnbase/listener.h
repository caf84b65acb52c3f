#pragma once

namespace sandbox {

/// What `void sandboxSetLogListener(LogListener, void* context)` of xnbase.dll takes: it
/// is called for every log line, on the thread that writes it, after the line is on
/// disk. A null listener ends it; a call may then still be under way.
using LogListener = void (*)(const char* function, const char* text, void* context);
using SetLogListener = void (*)(LogListener listener, void* context);

/// `bool sandboxIdle()` of modules that have threads of their own: whether these have
/// nothing left to do.
using Idle = bool (*)();

/// `void sandboxPoll()` of modules that take in what other processes of the run do: the
/// host calls it every few hundredths of a second, from one thread, once the plug-in has
/// started.
using Poll = void (*)();

} // namespace sandbox
