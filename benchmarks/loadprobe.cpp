// Prints the CPU time that loading a library takes, in seconds.

#include <QtGlobal>

#include <cstdio>
#include <ctime>

#include <dlfcn.h>

namespace {

double cpuTime()
{
    timespec time;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2 || qVersion() == nullptr) { return 2; }
    const double before = cpuTime();
    void* const library = dlopen(argv[1], RTLD_LAZY);
    const double after = cpuTime();
    std::printf("%.9f\n", after - before);
    return library != nullptr ? 0 : 1;
}
