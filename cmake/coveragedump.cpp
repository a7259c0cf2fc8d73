// Part of the library in coverage builds alone: a process that ends by a fatal log line or by the
// signal handler's _exit() skips what writes the counts at exit, so they are written here.

#include <csignal>
#include <cstdlib>

#include <unistd.h>

extern "C" void __gcov_dump();

// Hidden like all symbols, so that it replaces the system's function in the library's own calls.
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
