#include <core/posixsignals.h>

#include <support/childprocess.h>
#include <support/helpers.h>

#include <QCoreApplication>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <cerrno>
#include <csignal>

#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

constexpr int burstCount = 100;
constexpr int burstSize = 100;

/** A target of signals; with bursts, it sends the next hundred itself as soon as the last have come. */
class Receiver : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void count()
    {
        if (nestsEvents) { QCoreApplication::processEvents(); }
        if (++counted == burstCount * burstSize) {
            QCoreApplication::quit();
        } else if (sendsBursts && counted % burstSize == 0) {
            burst();
        }
    }
    void miscount() { counted += 1'000'000; }

public:
    void burst()
    {
        sendsBursts = true;
        for (int i = 0; i < burstSize; ++i) { std::raise(SIGUSR1); }
    }

    int counted = 0;
    bool sendsBursts = false;
    bool nestsEvents = false;
};

/** Fills the socket from another thread until that waits in the handler, and interrupts its wait. */
void floodAndInterrupt()
{
    struct sigaction action = {};
    action.sa_handler = [](int) {}; // without SA_RESTART, so that the handler's write is interrupted
    sigaction(SIGUSR2, &action, nullptr);
    std::thread flood([] {
        for (int i = 0; i < burstCount * burstSize; ++i) { std::raise(SIGUSR1); }
    });
    for (int i = 0; i < 50; ++i) {
        pthread_kill(flood.native_handle(), SIGUSR2);
        QThread::msleep(1);
    }
    flood.detach();
}

/** One case, in a process of its own; the exit code 77 says that it ended otherwise than meant. */
int runCase(int argc, char** argv)
{
    const QByteArray name = argv[1];
    Receiver receiver;
    PosixSignals& bridge = PosixSignals::instance;
    bridge.setup(SIGTERM, &bridge, "applicationQuit"); // before there is an application
    bridge.setup(SIGUSR1, &receiver, "miscount");
    bridge.setup(SIGUSR1, &receiver, "count");
    QCoreApplication application(argc, argv);
    QTimer::singleShot(10'000, [] { _exit(77); });
    const auto later = [](auto function) { QTimer::singleShot(0, QCoreApplication::instance(), function); };

    if (name == "quit" || name == "twice at once") {
        later([count = name == "quit" ? 1 : 2] {
            for (int i = 0; i < count; ++i) { std::raise(SIGTERM); }
        });
    } else if (name == "while quitting" || name == "while quitting, unheard") {
        QObject::connect(&application, &QCoreApplication::aboutToQuit, [&name] {
            if (name != "while quitting") { close(STDERR_FILENO); }
            std::raise(SIGTERM);
        });
        later([] { std::raise(SIGTERM); });
    } else if (name.startsWith("no socket")) {
        later([&name, unread = name == "no socket, one unread"] {
            if (unread) { std::raise(SIGUSR1); }
            for (int file = name.endsWith("unheard") ? 2 : 3; file < 100; ++file) { close(file); }
            unread ? bridge.applicationQuit() : void(std::raise(SIGTERM));
        });
    } else if (name == "one descriptor") { // left, where a pair needs two
        const rlim_t end = rlim_t(dup(STDERR_FILENO)) + 2;
        const rlimit tight{end, end};
        setrlimit(RLIMIT_NOFILE, &tight);
    } else if (name == "nested events while quitting") {
        receiver.nestsEvents = true;
        later([] {
            for (const int number : {SIGTERM, SIGUSR1, SIGUSR1, SIGUSR1}) { std::raise(number); }
        });
    } else if (name == "bursts") {
        later([&receiver] { receiver.burst(); });
    } else if (name == "flood") {
        later(floodAndInterrupt);
    } else if (name == "changed later") {
        later([&receiver] {
            bridge.setup(SIGUSR1, &receiver, "miscount");
            bridge.setup(SIGUSR2, &receiver, "count"); // too late: its default action ends the process
            errno = 4711;
            std::raise(SIGUSR1);
            std::printf("errno %d ", errno);
            std::fflush(stdout);
            QTimer::singleShot(50, [&receiver] {
                std::printf("counted %d", receiver.counted);
                std::fflush(stdout);
                std::raise(SIGUSR2);
            });
        });
    }
    const int exitCode = QCoreApplication::exec();
    std::printf("counted %d", receiver.counted);
    return exitCode;
}

} // namespace

class PosixSignalsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject()
    {
        const QMetaObject* const meta = PosixSignals::instance.metaObject();
        QCOMPARE(meta->className(), "PosixSignals");
        QByteArray slotNames;
        for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
            slotNames += meta->method(i).name() + (meta->method(i).access() == QMetaMethod::Public ? "+ " : "- ");
        }
        QCOMPARE(slotNames, QByteArray("applicationQuit+ initialize- signalHandle- "));
    }

    void process()
    {
        const QByteArray start = "void PosixSignals::initialize()\n";
        const QByteArray quit = "void PosixSignals::applicationQuit() Cleaning up and terminating...\n";
        const QByteArray once = start + "void PosixSignals::signalHandle() Processing signal 15\n" + quit;
        const QByteArray twice =
            once
            + "void PosixSignals::signalHandle() Processing signal 15\n"
              "void PosixSignals::applicationQuit() Cleanup taking too long, immediate termination...\n";
        const QByteArray caught("Signal caught when application is terminating, immediate termination...\n\0", 73);
        const QByteArray lost("Unable to pass signal information to application, immediate termination...\n\0", 76);
        const struct {
            const char* name;
            int exitCode;
            QByteArray error, output;
        } rows[] = {
            {"quit", 0, once, "counted 0"},
            {"twice at once", 1, twice, ""},
            {"while quitting", 2, once + caught, ""},
            {"while quitting, unheard", 1, once, ""},
            {"no socket", 4, start + lost, ""},
            {"no socket, unheard", 3, start, ""},
#ifndef __SANITIZE_ADDRESS__ // needs a pipe to look at an object
            {"one descriptor", 0,
                start + "void PosixSignals::initialize() Creating Unix socket failed\n"
                    + "QSocketNotifier: Invalid socket specified\n",
                "counted 0"},
#endif
            {"no socket, one unread", 0,
                start + quit + "void PosixSignals::signalHandle() Could not read signal number from socket, ignoring\n",
                "counted 0"},
            {"changed later", -1, start + "void PosixSignals::signalHandle() Processing signal 10\n",
                "errno 4711 counted 1000000"}, // and a new signal is not caught
            {"nested events while quitting", 0, QByteArray(), "counted 3"},
            {"bursts", 0, QByteArray(), "counted 10000"},
            {"flood", 0, QByteArray(), "counted 10000"},
        };
        for (const auto& row : rows) {
            const ChildResult result = runChild({u(row.name)});
            QCOMPARE(u(row.name) + u(": ") + u(result.output), u(row.name) + u(": ") + u(row.output));
            QVERIFY2(row.error.isNull() || result.error == row.error, row.name);
            QCOMPARE(result.isCrash ? -1 : result.exitCode, row.exitCode);
        }
    }
};

int main(int argc, char** argv)
{
    if (argc == 2 && argv[1][0] != '-') { return runCase(argc, argv); }
    QCoreApplication application(argc, argv);
    PosixSignalsTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "posixsignalstest.moc"
