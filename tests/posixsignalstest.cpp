#include <core/posixsignals.h>

#include <support/childprocess.h>
#include <support/helpers.h>

#include <QCoreApplication>
#include <QHash>
#include <QSocketNotifier>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <cerrno>
#include <csignal>
#include <functional>
#include <memory>

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
    void applicationQuit() { count(); } // has the name, but is not the bridge's
    void miscount() { counted += 1'000'000; }
    void deleteOtherAndQuit()
    {
        other->reset();
        PosixSignals::instance.applicationQuit();
    }

public:
    void burst()
    {
        sendsBursts = true;
        for (int i = 0; i < burstSize; ++i) { std::raise(SIGUSR1); }
    }

    int counted = 0;
    bool sendsBursts = false;
    bool nestsEvents = false;
    std::unique_ptr<Receiver>* other = nullptr;
};

/** Says that the stack was unwound, as the end by exit() does not. */
struct Farewell {
    ~Farewell() { std::printf("unwound "); }
};

/** Asks to quit when the pipe has data, in the same pass of the event loop in which a signal is due. */
class PipeNotifier
{
public:
    PipeNotifier()
    {
        if (pipe(ends) != 0) { _exit(77); }
        notifier = std::make_unique<QSocketNotifier>(ends[0], QSocketNotifier::Read);
        QObject::connect(notifier.get(), &QSocketNotifier::activated, &PosixSignals::instance, [this] {
            notifier->setEnabled(false);
            PosixSignals::instance.applicationQuit();
        });
    }
    void activate() { writes += write(ends[1], "x", 1) == 1; }

private:
    int ends[2];
    int writes = 0;
    std::unique_ptr<QSocketNotifier> notifier;
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

void closeFrom(int first)
{
    for (int file = first; file < 100; ++file) { close(file); }
}

template <typename... Numbers> void raiseAll(Numbers... numbers) { (std::raise(numbers), ...); }

/** One case, in a process of its own; the exit code 77 says that it ended otherwise than meant. */
int runCase(const QByteArray& name)
{
    std::atexit([] { std::printf("exited"); });
    const Farewell farewell;
    Receiver receiver;
    auto other = std::make_unique<Receiver>();
    receiver.other = &other;
    PosixSignals& bridge = PosixSignals::instance;
    bridge.setup(SIGTERM, &bridge, "applicationQuit"); // before there is an application
    bridge.setup(SIGINT, &receiver, "deleteOtherAndQuit");
    bridge.setup(SIGHUP, other.get(), "count");
    bridge.setup(SIGURG, &receiver, "applicationQuit");
    bridge.setup(SIGUSR1, &receiver, "miscount");
    bridge.setup(SIGUSR1, &receiver, "count");
    int argc = 0;
    QCoreApplication application(argc, nullptr);
    QTimer::singleShot(10'000, [] { _exit(77); });
    PipeNotifier before;
    std::unique_ptr<PipeNotifier> after;
    const auto ask = [] { PosixSignals::instance.applicationQuit(); };
    const auto invokeHandler = [] { QMetaObject::invokeMethod(&PosixSignals::instance, "signalHandle"); };

    // Each runs in the event loop, once the handlers are installed.
    const QHash<QByteArray, std::function<void()>> cases{
        {"one request", [] { raiseAll(SIGTERM); }},
        {"two requests", [] { raiseAll(SIGTERM, SIGTERM); }},
        {"two requests, another signal between", [] { raiseAll(SIGTERM, SIGUSR1, SIGTERM); }},
        {"request, then other signals", [] { raiseAll(SIGTERM, SIGUSR1, SIGURG); }},
        {"signal while quitting",
            [] {
                QObject::connect(qApp, &QCoreApplication::aboutToQuit, [] { raiseAll(SIGTERM); }), raiseAll(SIGTERM);
            }},
        {"signal while quitting, unheard",
            [] {
                QObject::connect(qApp, &QCoreApplication::aboutToQuit, [] { close(STDERR_FILENO), raiseAll(SIGTERM); });
                raiseAll(SIGTERM);
            }},
        {"notifier before asks, signal waits", [&] { before.activate(), raiseAll(SIGUSR1); }},
        {"notifier before asks, request waits", [&] { before.activate(), raiseAll(SIGTERM); }},
        {"notifier after asks, signal waits",
            [&] { after = std::make_unique<PipeNotifier>(), after->activate(), raiseAll(SIGUSR1); }},
        {"queued call asks, signal waits",
            [&] { raiseAll(SIGUSR1), QMetaObject::invokeMethod(qApp, ask, Qt::QueuedConnection); }},
        {"queued call asks, request waits",
            [&] { raiseAll(SIGTERM), QMetaObject::invokeMethod(qApp, ask, Qt::QueuedConnection); }},
        {"timer asks, signal waits", [&] { raiseAll(SIGUSR1), QTimer::singleShot(0, qApp, ask); }},
        {"asks itself, request waits", [&] { raiseAll(SIGTERM), ask(); }},
        {"asks before the event loop, request waits", [] {}},
        {"asks after the event loop, signal waits", [] { QCoreApplication::quit(); }},
        {"slot deletes a waiting receiver", [] { raiseAll(SIGINT, SIGHUP); }},
        {"receiver is gone", [&] { other.reset(), raiseAll(SIGHUP, SIGTERM); }},
        {"nested events while quitting", [&] { receiver.nestsEvents = true, raiseAll(SIGUSR1, SIGTERM, SIGUSR1); }},
        {"nothing waits", [&] { invokeHandler(), invokeHandler(), raiseAll(SIGTERM); }},
        {"no socket", [] { closeFrom(3), raiseAll(SIGTERM); }},
        {"no socket, unheard", [] { closeFrom(2), raiseAll(SIGTERM); }},
        {"no socket, one unread", [&] { raiseAll(SIGUSR1), closeFrom(3), invokeHandler(), ask(); }},
        {"one descriptor", nullptr},
        {"bursts", [&] { receiver.burst(); }},
        {"flood", floodAndInterrupt},
        {"changed later",
            [&] {
                bridge.setup(SIGUSR1, &receiver, "miscount");
                bridge.setup(SIGUSR2, &receiver, "count"); // too late: its default action ends the process
                errno = 4711;
                raiseAll(SIGUSR1);
                std::printf("errno %d ", errno);
                QTimer::singleShot(50, [&receiver] {
                    std::printf("counted %d", receiver.counted);
                    std::fflush(stdout);
                    raiseAll(SIGUSR2);
                });
            }},
    };
    if (!cases.contains(name)) { return 77; }
    if (name == "one descriptor") { // left, where a pair needs two
        const rlim_t end = rlim_t(dup(STDERR_FILENO)) + 2;
        const rlimit tight{end, end};
        setrlimit(RLIMIT_NOFILE, &tight);
    } else if (name.startsWith("asks before")) {
        QCoreApplication::processEvents();
        raiseAll(SIGTERM), ask();
    } else {
        QTimer::singleShot(0, qApp, cases[name]);
    }
    const int exitCode = QCoreApplication::exec();
    if (name.startsWith("asks after")) { raiseAll(SIGUSR1), ask(); }
    std::printf("counted %d ", receiver.counted);
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

    void process_data()
    {
        QTest::addColumn<int>("exitCode"); // -1: ended by a signal
        QTest::addColumn<QByteArray>("output");
        QTest::addColumn<QByteArray>("error");
        QTest::addColumn<bool>("hasGlib");

        const QByteArray start = "debug: void PosixSignals::initialize()\n";
        const QByteArray handled = "debug: void PosixSignals::signalHandle() Processing signal ";
        const QByteArray quit = "debug: void PosixSignals::applicationQuit() Cleaning up and terminating...\n";
        const QByteArray once = start + handled + "15\n" + quit;
        const QByteArray again =
            "warning: void PosixSignals::applicationQuit() Cleanup taking too long, immediate termination...\n";
        const QByteArray unread =
            "warning: void PosixSignals::signalHandle() Could not read signal number from socket, ignoring\n";
        const QByteArray caught("Signal caught when application is terminating, immediate termination...\n\0", 73);
        const QByteArray lost("Unable to pass signal information to application, immediate termination...\n\0", 76);
        const QByteArray any; // depends on which of two events the event loop takes first
        const QByteArray none = "counted 0 unwound exited";
        const struct {
            const char* name;
            int exitCode;
            QByteArray output, error;
        } rows[] = {
            {"one request", 0, none, once},
            {"two requests", 1, "exited", once + handled + "15\n" + again},
            {"two requests, another signal between", 1, "exited", once + handled + "15\n" + again},
            {"request, then other signals", 0, none, once},
            {"signal while quitting", 2, "", once + caught},
            {"signal while quitting, unheard", 1, "", once},
            {"notifier before asks, signal waits", 0, none, start + quit},
            {"notifier before asks, request waits", 0, none, start + quit},
            {"notifier after asks, signal waits", 0, any, any},
            {"queued call asks, signal waits", 0, any, any},
            {"queued call asks, request waits", 0, any, any},
            {"timer asks, signal waits", 0, any, any},
            {"asks itself, request waits", 0, none, start + quit},
            {"asks before the event loop, request waits", 1, "exited", start + quit + handled + "15\n" + again},
            {"asks after the event loop, signal waits", 0, none, start + quit},
            {"slot deletes a waiting receiver", 0, none, start + handled + "2\n" + quit},
            {"receiver is gone", 0, none, start + handled + "1\n" + once.mid(start.size())},
            {"nested events while quitting", 0, "counted 1 unwound exited",
                start + handled + "10\n" + once.mid(start.size())},
            {"nothing waits", 0, none, start + unread + unread + once.mid(start.size())},
            {"no socket", 4, "", start + lost},
            {"no socket, unheard", 3, "", start},
            {"no socket, one unread", 0, none, start + unread + quit},
#ifndef __SANITIZE_ADDRESS__ // needs a pipe to look at an object
            {"one descriptor", 0, none,
                start + "critical: void PosixSignals::initialize() Creating Unix socket failed\n"
                    + "warning: QSocketNotifier: Invalid socket specified\n"},
#endif
            {"changed later", -1, "errno 4711 counted 1000000", start + handled + "10\n"}, // a new signal is not caught
            {"bursts", 0, "counted 10000 unwound exited", any},
            {"flood", 0, "counted 10000 unwound exited", any},
        };
        for (const auto& row : rows) {
            for (const bool hasGlib : {true, false}) {
                QTest::addRow("%s%s", row.name, hasGlib ? "" : ", without GLib")
                    << row.exitCode << row.output << row.error << hasGlib;
            }
        }
    }

    void process()
    {
        QFETCH(int, exitCode);
        QFETCH(QByteArray, output);
        QFETCH(QByteArray, error);
        QFETCH(bool, hasGlib);
        qputenv("QT_MESSAGE_PATTERN", "%{type}: %{message}");
        qputenv("QT_HASH_SEED", "0"); // without GLib, the order of notifiers is that of a hash
        hasGlib ? qunsetenv("QT_NO_GLIB") : qputenv("QT_NO_GLIB", "1");
        const QByteArray name = QByteArray(QTest::currentDataTag()).replace(", without GLib", "");
        const ChildResult result = runChild({u("case"), u(name)});
        if (!error.isNull()) { QCOMPARE(result.error, error); }
        if (!output.isNull()) { QCOMPARE(result.output, output); }
        QCOMPARE(result.isCrash ? -1 : result.exitCode, exitCode);
    }

    void setupRefusesTargetsThatCannotBeInvoked()
    {
#ifdef QT_NO_DEBUG
        QSKIP("only debug builds look");
#endif
        const struct {
            const char *target, *message;
        } rows[] = {
            {"null", "no receiver for the signal"},
            {"applicationQuit()", "the receiver has no such method without arguments"},
            {"1applicationQuit()", "the receiver has no such method without arguments"},
            {"deleteLater", ""},
        };
        for (const auto& row : rows) {
            const ChildResult result = runChild({u("setup"), u(row.target)});
            QCOMPARE(result.isCrash, *row.message != '\0');
            QVERIFY2(result.error.contains(row.message), result.error);
        }
    }
};

int main(int argc, char** argv)
{
    if (argc == 3 && argv[1] == QByteArray("setup")) {
        PosixSignals& bridge = PosixSignals::instance;
        bridge.setup(SIGTERM, argv[2] == QByteArray("null") ? nullptr : &bridge, argv[2]);
        return 0;
    }
    if (argc == 3 && argv[1] == QByteArray("case")) { return runCase(argv[2]); }
    QCoreApplication application(argc, argv);
    PosixSignalsTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "posixsignalstest.moc"
