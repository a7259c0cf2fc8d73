// Part of the library only in coverage builds. A process that ends with a fatal log line or the
// signal handler's _exit() does not write its counts at exit, so they are written here.

#include <csignal>
#include <cstdlib>

#include <unistd.h>

extern "C" void __gcov_dump();

// Hidden like all symbols: replaces the system's function only in calls from the library.
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
