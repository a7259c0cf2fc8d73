// A service that ends in order: SIGTERM or SIGINT quits the event loop, and then its singletons go,
// the newest first. A second signal ends it at once.

#include <core/orvcore.h>

#include <QCoreApplication>
#include <QTimer>

#include <csignal>
#include <cstdio>

namespace {

class Part : public AbstractSingleton
{
public:
    explicit Part(const char* name)
        : name(name)
    {
        std::printf("%s is there\n", name);
    }
    ~Part() override
    {
        std::printf("%s is gone\n", name);
    }

private:
    const char* const name;
};

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    PosixSignals& bridge = PosixSignals::instance;
    bridge.setup(SIGTERM, &bridge, "applicationQuit");
    bridge.setup(SIGINT, &bridge, "applicationQuit");

    SingletonTracker::insert("audio", new Part("audio"));
    SingletonTracker::insert("dialog", new Part("dialog")); // uses audio, so it goes first

    QTimer::singleShot(0, [] {
        std::puts("running until SIGTERM or SIGINT");
        std::fflush(stdout);
    });
    const int exitCode = QCoreApplication::exec();
    std::puts("the event loop has ended");
    return exitCode;
}
