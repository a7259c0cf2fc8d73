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

// Stand in for the system's, and interrupt every second time that the number of a signal is read or written.
extern "C" ssize_t read(int file, void* data, std::size_t size) { return callInterrupted(SYS_read, file, data, size); }
extern "C" ssize_t write(int file, const void* data, std::size_t size) {
    return callInterrupted(SYS_write, file, data, size);
}

namespace {

constexpr int floodSize = 10'000;

/** A target of signals. */
class Receiver : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void count() {
        if (nestsEvents) { QCoreApplication::processEvents(); }
        if (++counted == floodSize) { QCoreApplication::quit(); }
    }
    void applicationQuit() { count(); } // has the name, but is not the bridge's
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

/**
 * Acts when its pipe has data, in the same pass of the event loop in which a signal is due. Several notifiers
 * wait for the data: without GLib a hash orders them, so that one of many comes before the bridge's.
 */
class PipeNotifier
{
public:
    PipeNotifier()
        : isOpen(pipe(ends) == 0) {
        for (auto& notifier : notifiers) {
            notifier = std::make_unique<QSocketNotifier>(dup(ends[0]), QSocketNotifier::Read);
            QObject::connect(notifier.get(), &QSocketNotifier::activated, [this] {
                for (const auto& each : notifiers) { each->setEnabled(false); }
                act();
            });
        }
    }
    void activate(void (*function)()) {
        act = function;
        isOpen = write(ends[1], "x", 1) == 1;
    }

private:
    int ends[2];
    bool isOpen;
    std::unique_ptr<QSocketNotifier> notifiers[16];
    void (*act)() = nullptr;
};

/** What a child process has on its stack, and says when the stack is unwound, as the end by exit() does not. */
struct Child {
    Child() { it = this; }
    ~Child() { std::printf("counted %d unwound ", receiver.counted); }

    static Child* it;
    Receiver receiver;
    PipeNotifier pipe;
};
Child* Child::it = nullptr;

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
const QByteArray any; // depends on which of two events the event loop takes first

/** What a child process does, in the event loop unless its name says otherwise, and how it ends. */
const struct {
    const char* name;
    void (*act)();
    QByteArray error; // behind the line of the start
    QByteArray output = none;
    int exitCode = 0; // -1: by a signal
} cases[] = {
    {"one request", [] { raiseAll(SIGTERM); }, once},
    {"two requests", [] { raiseAll(SIGTERM, SIGUSR1, SIGTERM); }, once + handled + "15\n" + again, "exited", 1},
    {"request, then other signals", [] { raiseAll(SIGTERM, SIGUSR1, SIGURG); }, once},
    {"signal while quitting", [] { atQuit([] { raiseAll(SIGTERM); }), raiseAll(SIGTERM); }, once + caught, "", 2},
    {"signal while quitting, unheard",
        [] { atQuit([] { closeFrom(STDERR_FILENO), raiseAll(SIGTERM); }), raiseAll(SIGTERM); }, once, "", 1},
    {"notifier asks, signal waits", [] { Child::it->pipe.activate(ask), raiseAll(SIGUSR1); }, quit},
    {"notifier asks, request waits", [] { Child::it->pipe.activate(ask), raiseAll(SIGTERM); }, quit},
    {"queued call asks, request waits", [] { raiseAll(SIGTERM), queue(ask); }, any, any},
    {"timer asks, signal waits", [] { raiseAll(SIGUSR1), QTimer::singleShot(0, ask); }, any, any},
    {"before the event loop: in another one",
        [] {
            QTimer::singleShot(0, [] { raiseAll(SIGTERM); });
            const int code = QEventLoop().exec();
            std::printf("left with %d ", code);
            QTimer::singleShot(0, [] { QCoreApplication::exit(7); });
        },
        once, "left with 0 " + none, 7},
    {"asks itself, request waits", [] { raiseAll(SIGTERM), ask(); }, quit},
    {"before the event loop: asks, request waits", [] { raiseAll(SIGTERM), ask(); }, quit},
    {"after the event loop: asks, signal waits", [] { raiseAll(SIGUSR1), ask(); }, quit},
    {"slot deletes a waiting receiver", [] { raiseAll(SIGINT, SIGHUP); }, handled + "2\n" + quit},
    {"receiver is gone", [] { Child::it->receiver.other.reset(), raiseAll(SIGHUP, SIGTERM); }, handled + "1\n" + once},
    {"nested events while quitting",
        [] { Child::it->receiver.nestsEvents = true, raiseAll(SIGUSR1, SIGTERM, SIGUSR1); }, handled + "10\n" + once,
        one},
    {"invoked while a signal waits", [] { raiseAll(SIGUSR1), invokeHandler(), raiseAll(SIGTERM); },
        handled + "10\n" + once, one},
    {"invoked in the pass in which its notifier is due",
        [] {
            Child::it->pipe.activate(invokeHandler), raiseAll(SIGUSR1);
            QTimer::singleShot(20, [] { raiseAll(SIGTERM); });
        },
        handled + "10\n" + once, one},
    {"nothing waits", [] { invokeHandler(), invokeHandler(), raiseAll(SIGTERM); }, unread + unread + once},
    {"nothing waits, inside itself and behind another call",
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
    {"no socket, unheard", [] { closeFrom(2), raiseAll(SIGTERM); }, "", "", 3},
    {"no socket, one unread", [] { raiseAll(SIGUSR1), closeFrom(3), invokeHandler(), ask(); }, unread + quit},
#ifndef __SANITIZE_ADDRESS__ // needs a pipe to look at an object
    {"before the event loop: one descriptor is left, where a pair needs two",
        [] {
            const rlim_t end = rlim_t(dup(STDERR_FILENO)) + 2;
            const rlimit tight{end, end};
            setrlimit(RLIMIT_NOFILE, &tight);
        },
        "critical: void PosixSignals::initialize() Creating Unix socket failed\n"
        "warning: QSocketNotifier: Invalid socket specified\n"},
#endif
    {"more than the socket holds",
        [] {
            std::thread([] {
                for (int i = 0; i < floodSize; ++i) { std::raise(SIGUSR1); }
            }).detach();
        },
        any, "counted 10000 unwound exited"},
    {"changed later", // a new signal is not caught: its default action ends the process
        [] {
            PosixSignals::instance.setup(SIGUSR1, &Child::it->receiver, "miscount");
            PosixSignals::instance.setup(SIGUSR2, &Child::it->receiver, "count");
            errno = 4711;
            raiseAll(SIGUSR1);
            std::printf("errno %d ", errno);
            QTimer::singleShot(50, [] {
                std::printf("counted %d", Child::it->receiver.counted);
                std::fflush(stdout);
                raiseAll(SIGUSR2);
            });
        },
        handled + "10\n", "errno 4711 counted 1000000", -1},
};

/** One case, in a process of its own; the exit code 77 says that it ended otherwise than meant. */
int runCase(const QByteArray& name, void (*act)()) {
    std::atexit([] { std::printf("exited"); });
    int argc = 0;
    std::unique_ptr<QCoreApplication> application;
    PosixSignals& bridge = PosixSignals::instance;
    bridge.setup(SIGTERM, &bridge, "applicationQuit"); // before there is an application
    application = std::make_unique<QCoreApplication>(argc, nullptr);
    QTimer::singleShot(10'000, [] { _exit(77); });
    Child child;
    child.receiver.other = std::make_unique<Receiver>();
    bridge.setup(SIGINT, &child.receiver, "deleteOtherAndQuit");
    bridge.setup(SIGHUP, child.receiver.other.get(), "count");
    bridge.setup(SIGURG, &child.receiver, "applicationQuit");
    bridge.setup(SIGUSR1, &child.receiver, "miscount");
    bridge.setup(SIGUSR1, &child.receiver, "count");
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

class PosixSignalsTest : public QObject
{
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
        qputenv("QT_HASH_SEED", "0"); // without GLib, the order of notifiers is that of a hash
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
