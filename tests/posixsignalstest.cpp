#include <core/posixsignals.h>

#include <support/childprocess.h>
#include <support/helpers.h>

#include <cerrno>
#include <csignal>
#include <memory>

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

std::atomic<unsigned> calls{0};

template <typename Data> ssize_t callInterrupted(long number, int file, Data* data, std::size_t size) {
    const bool isInterrupted = size == sizeof(int) && calls++ % 2 == 0;
    errno = isInterrupted ? EINTR : errno;
    return isInterrupted ? -1 : syscall(number, file, data, size);
}

} // namespace

// Replace the system calls: every second read or write of a signal number is interrupted.
extern "C" ssize_t read(int file, void* data, std::size_t size) { return callInterrupted(SYS_read, file, data, size); }
extern "C" ssize_t write(int file, const void* data, std::size_t size) {
    return callInterrupted(SYS_write, file, data, size);
}

namespace {

constexpr int floodSize = 10'000;

/** A target of signals. */
class Receiver : public QObject {
    Q_OBJECT

public Q_SLOTS:
    void count() {
        if (nestsEvents) { QCoreApplication::processEvents(); }
        if (++counted == floodSize) { QCoreApplication::quit(); }
    }
    void applicationQuit() { count(); } // has only the name of the bridge's slot
    void miscount() { counted += 1'000'000; }
    void deleteOtherAndQuit() {
        other.reset();
        PosixSignals::instance.applicationQuit();
    }

public:
    int counted = 0;
    bool nestsEvents = false;
    std::unique_ptr<Receiver> other;
};

Receiver* receiver = nullptr; // of the running case

void ask() { PosixSignals::instance.applicationQuit(); }
void invokeHandler() { QMetaObject::invokeMethod(&PosixSignals::instance, "signalHandle"); }
void queue(void (*function)()) { QMetaObject::invokeMethod(qApp, function, Qt::QueuedConnection); }
template <typename Function> void atQuit(Function function) {
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, function);
}
template <typename... Numbers> void raiseAll(Numbers... numbers) { (std::raise(numbers), ...); }

void closeFrom(int first) {
    for (int file = first; file < 100; ++file) { close(file); }
}

int pipeEnds[2];
void (*actBesideSignals)() = nullptr;

/**
 * Prepares callBesideSignals(). Many notifiers watch the pipe: without GLib a hash orders all notifiers, and one of
 * these comes before the bridge's.
 */
void makeNotifiers() {
    QVERIFY(pipe(pipeEnds) == 0);
    auto* const notifiers = new QObject(qApp);
    for (int i = 0; i < 16; ++i) {
        auto* const notifier = new QSocketNotifier(dup(pipeEnds[0]), QSocketNotifier::Read, notifiers);
        QObject::connect(notifier, &QSocketNotifier::activated, [notifiers] {
            for (auto* const each : notifiers->findChildren<QSocketNotifier*>()) { each->setEnabled(false); }
            actBesideSignals();
        });
    }
}

/** Has the event loop call a function in the same pass in which it delivers a signal. */
void callBesideSignals(void (*function)()) {
    actBesideSignals = function;
    QVERIFY(write(pipeEnds[1], "x", 1) == 1);
}

const QByteArray handled = "debug: void PosixSignals::signalHandle() Processing signal ";
const QByteArray quit = "debug: void PosixSignals::applicationQuit() Cleaning up and terminating...\n";
const QByteArray once = handled + "15\n" + quit;
const QByteArray again = "warning: void PosixSignals::applicationQuit() "
                         "Cleanup taking too long, immediate termination...\n";
const QByteArray unread =
    "warning: void PosixSignals::signalHandle() Could not read signal number from socket, ignoring\n";
const QByteArray caught("Signal caught when application is terminating, immediate termination...\n\0", 73);
const QByteArray lost("Unable to pass signal information to application, immediate termination...\n\0", 76);
const QByteArray none = "counted 0 unwound exited";
const QByteArray one = "counted 1 unwound exited";
const QByteArray any; // not compared: it depends on the order of two events

/** What a child process does and how it ends. It acts in the event loop unless the name says otherwise. */
const struct {
    const char* name;
    void (*act)();
    QByteArray error; // after the line of initialize()
    QByteArray output = none;
    int exitCode = 0; // -1: ended by a signal
} cases[] = {
    {"one request", [] { raiseAll(SIGTERM); }, once},
    {"two requests", [] { raiseAll(SIGTERM, SIGUSR1, SIGTERM); }, once + handled + "15\n" + again, "exited", 1},
    {"request, then other signals", [] { raiseAll(SIGTERM, SIGUSR1, SIGURG); }, once},
    {"signal while quitting", [] { atQuit([] { raiseAll(SIGTERM); }), raiseAll(SIGTERM); }, once + caught, "", 2},
    {"signal while quitting, standard error closed",
        [] { atQuit([] { closeFrom(STDERR_FILENO), raiseAll(SIGTERM); }), raiseAll(SIGTERM); }, once, "", 1},
    {"notifier quits, signal waits", [] { callBesideSignals(ask), raiseAll(SIGUSR1); }, quit},
    {"notifier quits, request waits", [] { callBesideSignals(ask), raiseAll(SIGTERM); }, quit},
    {"queued call quits, request waits", [] { raiseAll(SIGTERM), queue(ask); }, any, any},
    {"timer quits, signal waits", [] { raiseAll(SIGUSR1), QTimer::singleShot(0, ask); }, any, any},
    {"before the event loop: request in another loop",
        [] {
            QTimer::singleShot(0, [] { raiseAll(SIGTERM); });
            const int code = QEventLoop().exec();
            std::printf("left with %d ", code);
            QTimer::singleShot(0, [] { QCoreApplication::exit(7); });
        },
        once, "left with 0 " + none, 7},
    {"program quits, request waits", [] { raiseAll(SIGTERM), ask(); }, quit},
    {"before the event loop: program quits, request waits", [] { raiseAll(SIGTERM), ask(); }, quit},
    {"after the event loop: program quits, signal waits", [] { raiseAll(SIGUSR1), ask(); }, quit},
    {"slot deletes a waiting receiver", [] { raiseAll(SIGINT, SIGHUP); }, handled + "2\n" + quit},
    {"receiver is gone", [] { receiver->other.reset(), raiseAll(SIGHUP, SIGTERM); }, handled + "1\n" + once},
    {"nested events while quitting", [] { receiver->nestsEvents = true, raiseAll(SIGUSR1, SIGTERM, SIGUSR1); },
        handled + "10\n" + once, one},
    {"handler invoked while a signal waits", [] { raiseAll(SIGUSR1), invokeHandler(), raiseAll(SIGTERM); },
        handled + "10\n" + once, one},
    {"handler invoked in the pass that fires its notifier",
        [] {
            callBesideSignals(invokeHandler), raiseAll(SIGUSR1);
            QTimer::singleShot(20, [] { raiseAll(SIGTERM); });
        },
        handled + "10\n" + once, one},
    {"invoked, nothing waits", [] { invokeHandler(), invokeHandler(), raiseAll(SIGTERM); }, unread + unread + once},
    {"handler invoked by itself and by a queued call, nothing waits",
        [] {
            PosixSignals::instance.setup(SIGHUP, &PosixSignals::instance, "signalHandle");
            raiseAll(SIGHUP);
            QMetaObject::invokeMethod(&PosixSignals::instance, "signalHandle", Qt::QueuedConnection);
            QTimer::singleShot(20, [] { raiseAll(SIGTERM); });
        },
        any},
    {"events are handled after quitting", [] { raiseAll(SIGTERM, SIGUSR1), ask(), atQuit([] { QTest::qWait(20); }); },
        quit},
    {"no socket", [] { closeFrom(3), raiseAll(SIGTERM); }, lost, "", 4},
    {"no socket, standard error closed", [] { closeFrom(2), raiseAll(SIGTERM); }, "", "", 3},
    {"no socket, a number is unread", [] { raiseAll(SIGUSR1), closeFrom(3), invokeHandler(), ask(); }, unread + quit},
#ifndef __SANITIZE_ADDRESS__ // the sanitizer opens a pipe to inspect an object
    {"before the event loop: one descriptor is left, the socket pair needs two",
        [] {
            const rlim_t end = rlim_t(dup(STDERR_FILENO)) + 2;
            const rlimit tight{end, end};
            setrlimit(RLIMIT_NOFILE, &tight);
        },
        "critical: void PosixSignals::initialize() Creating Unix socket failed\n"
        "warning: QSocketNotifier: Invalid socket specified\n"},
#endif
    {"more signals than the socket holds",
        [] {
            std::thread([] {
                for (int i = 0; i < floodSize; ++i) { std::raise(SIGUSR1); }
            }).detach();
        },
        any, "counted 10000 unwound exited"},
    {"setup() in the event loop", // a new signal is not caught: its default action ends the process
        [] {
            PosixSignals::instance.setup(SIGUSR1, receiver, "miscount");
            PosixSignals::instance.setup(SIGUSR2, receiver, "count");
            errno = 4711;
            raiseAll(SIGUSR1);
            std::printf("errno %d ", errno);
            QTimer::singleShot(50, [] {
                std::printf("counted %d", receiver->counted);
                std::fflush(stdout);
                raiseAll(SIGUSR2);
            });
        },
        handled + "10\n", "errno 4711 counted 1000000", -1},
};

/** Runs one case; only called in a child process. Exit code 77: it did not end in time. */
int runCase(const QByteArray& name, void (*act)()) {
    std::atexit([] { std::printf("exited"); });
    PosixSignals& bridge = PosixSignals::instance;
    bridge.setup(SIGTERM, &bridge, "applicationQuit"); // before the application exists
    int argc = 0;
    QCoreApplication application(argc, nullptr);
    QTimer::singleShot(10'000, [] { _exit(77); });
    makeNotifiers();
    Receiver target;
    receiver = &target;
    receiver->other = std::make_unique<Receiver>();
    // Prints nothing if exit() ends the process, because that does not unwind the stack.
    const auto end = qScopeGuard([] { std::printf("counted %d unwound ", receiver->counted); });
    bridge.setup(SIGINT, receiver, "deleteOtherAndQuit");
    bridge.setup(SIGHUP, receiver->other.get(), "count");
    bridge.setup(SIGURG, receiver, "applicationQuit");
    bridge.setup(SIGUSR1, receiver, "miscount");
    bridge.setup(SIGUSR1, receiver, "count");
    if (name.startsWith("before the event loop")) {
        if (name.endsWith("waits")) { QCoreApplication::processEvents(); }
        act();
    } else {
        QTimer::singleShot(0, [&] { name.startsWith("after") ? QCoreApplication::quit() : act(); });
    }
    const int exitCode = QCoreApplication::exec();
    if (name.startsWith("after")) { act(); }
    return exitCode;
}

} // namespace

class PosixSignalsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void process_data() {
        QTest::addColumn<int>("index");
        QTest::addColumn<bool>("hasGlib");
        for (int i = 0; i < int(std::size(cases)); ++i) {
            QTest::newRow(cases[i].name) << i << true;
            QTest::addRow("%s, without GLib", cases[i].name) << i << false;
        }
    }

    void process() {
        QFETCH(int, index);
        QFETCH(bool, hasGlib);
        qputenv("QT_MESSAGE_PATTERN", "%{type}: %{message}");
        qputenv("QT_HASH_SEED", "0"); // without GLib, a hash orders the notifiers
        hasGlib ? qunsetenv("QT_NO_GLIB") : qputenv("QT_NO_GLIB", "1");
        const auto& expected = cases[index];
        const ChildResult result = runChild({u(expected.name)});
        const QByteArray start = "debug: void PosixSignals::initialize()\n";
        if (!expected.error.isNull()) { QCOMPARE(result.error, start + expected.error); }
        if (!expected.output.isNull()) { QCOMPARE(result.output, expected.output); }
        QCOMPARE(result.isCrash ? -1 : result.exitCode, expected.exitCode);
    }
};

int main(int argc, char** argv) {
    for (const auto& row : cases) {
        if (argc == 2 && qstrcmp(argv[1], row.name) == 0) { return runCase(row.name, row.act); }
    }
    QCoreApplication application(argc, argv);
    PosixSignalsTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "posixsignalstest.moc"
