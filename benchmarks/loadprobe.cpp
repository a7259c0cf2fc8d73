// Prints the CPU time that loading a library takes, in seconds.
// usage: loadprobe LIBRARY bare|application lazy|immediate   into which process, and how calls are bound

#include <QCoreApplication>
#include <QHash>
#include <QMetaType>

#include <cstdio>
#include <cstring>
#include <ctime>

#include <dlfcn.h>

struct Known {};
Q_DECLARE_METATYPE(Known)

namespace {

double cpuTime() {
    timespec time;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
}

double load(const char* library, int binding) {
    const double before = cpuTime();
    void* const loaded = dlopen(library, binding);
    const double after = cpuTime();
    if (loaded == nullptr) { qFatal("%s", dlerror()); }
    return after - before;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4 || qVersion() == nullptr) { return 2; }
    const int binding = std::strcmp(argv[3], "lazy") == 0 ? RTLD_LAZY : RTLD_NOW;
    double seconds = 0;
    if (std::strcmp(argv[2], "bare") == 0) {
        seconds = load(argv[1], binding);
    } else {
        // The first type and the first hash of a process must not count as costs of the library.
        const QCoreApplication application(argc, argv);
        qRegisterMetaType<Known>("Known");
        const QHash<QString, int> hash{{QStringLiteral("key"), 1}};
        seconds = load(argv[1], binding);
    }
    std::printf("%.9f\n", seconds);
}
