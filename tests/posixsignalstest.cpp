#include <core/posixsignals.h>

#include <support/childprocess.h>
#include <support/helpers.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTest>
#include <QTimer>

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
    ~Child() { std::printf("counted %d unwound ", receiver.counted); }

    Receiver receiver;
    PipeNotifier pipe;
};

const QByteArray start = "debug: void PosixSignals::initialize()\n";
const QByteArray handled = "debug: void PosixSignals::signalHandle() Processing signal ";
const QByteArray quit = "debug: void PosixSignals::applicationQuit() Cleaning up and terminating...\n";
const QByteArray once = handled + "15\n" + quit;
const QByteArray again = "warning: void PosixSignals::applicationQuit() "
                         "Cleanup taking too long, immediate termination...\n";
const QByteArray unread =
    "warning: void PosixSignals::signalHandle() Could not read signal number from socket, ignoring\n";
const QByteArray caught("Signal caught when application is terminating, immediate termination...\n\0", 73);
const QByteArray lost("Unable to pass signal information to application, immediate termination...\n\0", 76);
const QByteArray any; // depends on which of two events the event loop takes first
const QByteArray none = "counted 0 unwound exited";

/** What a child process does, in the event loop unless its name says otherwise, and how it ends. */
const struct {
    const char* name;
    void (*act)(Child& child);
    int exitCode; // -1: by a signal
    QByteArray output, error;
} cases[] = {
    {"one request", [](Child&) { raiseAll(SIGTERM); }, 0, none, start + once},
    {"two requests", [](Child&) { raiseAll(SIGTERM, SIGUSR1, SIGTERM); }, 1, "exited",
        start + once + handled + "15\n" + again},
    {"request, then other signals", [](Child&) { raiseAll(SIGTERM, SIGUSR1, SIGURG); }, 0, none, start + once},
    {"signal while quitting", [](Child&) { atQuit([] { raiseAll(SIGTERM); }), raiseAll(SIGTERM); }, 2, "",
        start + once + caught},
    {"signal while quitting, unheard",
        [](Child&) { atQuit([] { closeFrom(STDERR_FILENO), raiseAll(SIGTERM); }), raiseAll(SIGTERM); }, 1, "",
        start + once},
    {"notifier asks, signal waits", [](Child& child) { child.pipe.activate(ask), raiseAll(SIGUSR1); }, 0, none,
        start + quit},
    {"notifier asks, request waits", [](Child& child) { child.pipe.activate(ask), raiseAll(SIGTERM); }, 0, none,
        start + quit},
    {"queued call asks, request waits", [](Child&) { raiseAll(SIGTERM), queue(ask); }, 0, any, any},
    {"timer asks, signal waits", [](Child&) { raiseAll(SIGUSR1), QTimer::singleShot(0, ask); }, 0, any, any},
    {"before the event loop: in another one",
        [](Child&) {
            QTimer::singleShot(0, [] { raiseAll(SIGTERM); });
            const int code = QEventLoop().exec();
            std::printf("left with %d ", code);
            QTimer::singleShot(0, [] { QCoreApplication::exit(7); });
        },
        7, "left with 0 counted 0 unwound exited", start + once},
    {"asks itself, request waits", [](Child&) { raiseAll(SIGTERM), ask(); }, 0, none, start + quit},
    {"before the event loop: asks, request waits", [](Child&) { raiseAll(SIGTERM), ask(); }, 0, none, start + quit},
    {"after the event loop: asks, signal waits", [](Child&) { raiseAll(SIGUSR1), ask(); }, 0, none, start + quit},
    {"slot deletes a waiting receiver", [](Child&) { raiseAll(SIGINT, SIGHUP); }, 0, none,
        start + handled + "2\n" + quit},
    {"receiver is gone", [](Child& child) { child.receiver.other.reset(), raiseAll(SIGHUP, SIGTERM); }, 0, none,
        start + handled + "1\n" + once},
    {"nested events while quitting",
        [](Child& child) { child.receiver.nestsEvents = true, raiseAll(SIGUSR1, SIGTERM, SIGUSR1); }, 0,
        "counted 1 unwound exited", start + handled + "10\n" + once},
    {"invoked while a signal waits", [](Child&) { raiseAll(SIGUSR1), invokeHandler(), raiseAll(SIGTERM); }, 0,
        "counted 1 unwound exited", start + handled + "10\n" + once},
    {"invoked in the pass in which its notifier is due",
        [](Child& child) {
            child.pipe.activate(invokeHandler), raiseAll(SIGUSR1);
            QTimer::singleShot(20, [] { raiseAll(SIGTERM); });
        },
        0, "counted 1 unwound exited", start + handled + "10\n" + once},
    {"nothing waits", [](Child&) { invokeHandler(), invokeHandler(), raiseAll(SIGTERM); }, 0, none,
        start + unread + unread + once},
    {"nothing waits, inside itself and behind another call",
        [](Child&) {
            PosixSignals::instance.setup(SIGHUP, &PosixSignals::instance, "signalHandle");
            raiseAll(SIGHUP);
            QMetaObject::invokeMethod(&PosixSignals::instance, "signalHandle", Qt::QueuedConnection);
            QTimer::singleShot(20, [] { raiseAll(SIGTERM); });
        },
        0, none, any},
    {"events are handled after quitting",
        [](Child&) { raiseAll(SIGTERM, SIGUSR1), ask(), atQuit([] { QTest::qWait(20); }); }, 0, none, start + quit},
    {"no socket", [](Child&) { closeFrom(3), raiseAll(SIGTERM); }, 4, "", start + lost},
    {"no socket, unheard", [](Child&) { closeFrom(2), raiseAll(SIGTERM); }, 3, "", start},
    {"no socket, one unread", [](Child&) { raiseAll(SIGUSR1), closeFrom(3), invokeHandler(), ask(); }, 0, none,
        start + unread + quit},
#ifndef __SANITIZE_ADDRESS__ // needs a pipe to look at an object
    {"before the event loop: one descriptor is left, where a pair needs two",
        [](Child&) {
            const rlim_t end = rlim_t(dup(STDERR_FILENO)) + 2;
            const rlimit tight{end, end};
            setrlimit(RLIMIT_NOFILE, &tight);
        },
        0, none,
        start + "critical: void PosixSignals::initialize() Creating Unix socket failed\n"
            + "warning: QSocketNotifier: Invalid socket specified\n"},
#endif
    {"more than the socket holds",
        [](Child&) {
            std::thread([] {
                for (int i = 0; i < floodSize; ++i) { std::raise(SIGUSR1); }
            }).detach();
        },
        0, "counted 10000 unwound exited", any},
    {"changed later", // a new signal is not caught: its default action ends the process
        [](Child& child) {
            PosixSignals::instance.setup(SIGUSR1, &child.receiver, "miscount");
            PosixSignals::instance.setup(SIGUSR2, &child.receiver, "count");
            errno = 4711;
            raiseAll(SIGUSR1);
            std::printf("errno %d ", errno);
            QTimer::singleShot(50, [&child] {
                std::printf("counted %d", child.receiver.counted);
                std::fflush(stdout);
                raiseAll(SIGUSR2);
            });
        },
        -1, "errno 4711 counted 1000000", start + handled + "10\n"},
};

/** One case, in a process of its own; the exit code 77 says that it ended otherwise than meant. */
int runCase(const QByteArray& name, void (*act)(Child&)) {
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
        act(child);
    } else {
        QTimer::singleShot(0, [&] { name.startsWith("after") ? QCoreApplication::quit() : act(child); });
    }
    const int exitCode = QCoreApplication::exec();
    if (name.startsWith("after")) { act(child); }
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
        if (!expected.error.isNull()) { QCOMPARE(result.error, expected.error); }
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
