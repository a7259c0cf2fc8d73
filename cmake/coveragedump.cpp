// Part of the library only in coverage builds. A process that ends by a fatal log line or the signal
// handler's _exit() runs no exit handlers, so its counts are written here.

#include <csignal>
#include <cstdlib>

#include <unistd.h>

extern "C" void __gcov_dump();

// Hidden like all symbols, so it replaces the system's function only in calls from the library.
extern "C" void _exit(int status)
{
    __gcov_dump();
    _Exit(status);
}

namespace {

[[gnu::constructor]] void dumpWhenAborted()
{
    std::signal(SIGABRT, [](int) { __gcov_dump(); });
}

} // namespace
