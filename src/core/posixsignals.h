#pragma once

#include <core/orvcore_export.h>

#include <QHash>
#include <QObject>

#include <atomic>
#include <memory>
#include <utility>

/** @addtogroup core
 * @{ */

class QSocketNotifier;

/**
 * Brings POSIX signals to slots on the event loop, and ends the process in two stages.
 *
 *     int main(int argc, char** argv)
 *     {
 *         QCoreApplication application(argc, argv);
 *         PosixSignals& bridge = PosixSignals::instance;
 *         bridge.setup(SIGTERM, &bridge, "applicationQuit");
 *         bridge.setup(SIGINT, &bridge, "applicationQuit");
 *         return application.exec();
 *     }
 *
 * The signal handler writes the signal's number to a socket pair, in any thread; it calls nothing
 * but write and _exit, and leaves errno as it was. The event loop reads the numbers one at a time,
 * in their order, and invokes what was set up for them. The application thus handles a signal like
 * any other event.
 *
 * All signals are set up before the event loop first runs: the handlers are installed then. Later,
 * setup() only changes the target of a signal that was set up in time. Signals that come before are
 * not caught.
 *
 * The socket holds a few hundred numbers. When it is full, the interrupted thread waits in the
 * handler until the event loop has read one. Where that is the event loop's own thread, nobody
 * reads: the process hangs, and only SIGKILL ends it. So no signal is to be set up that may come in
 * hundreds while the event loop is busy. The sockets are inherited by child processes, as the calls
 * that would prevent it are not available everywhere, and stay open until the process ends; a child
 * that goes on without exec must not use the bridge.
 *
 * Exit codes: 1 after a second request to quit, with a warning in the log; 2 after a signal when
 * the application is already quitting, and 4 when the handler could not pass a number on, each with
 * one line on standard error. In the handler, 1 and 3 take the place of 2 and 4 when not even that
 * line could be written; a broken pipe there ends the process by SIGPIPE instead.
 *
 * Thread-safety: apart from the handler, everything belongs to the thread that loaded the library,
 * which is the main thread as a rule.
 */
class ORVCORE_EXPORT PosixSignals : public QObject
{
    Q_OBJECT

public:
    /** The one object. */
    static PosixSignals instance;

    /**
     * Sets or replaces what a signal invokes: a slot or invokable method of @p receiver without
     * arguments, by its bare name, at once if the receiver lives in this thread, else from its own
     * event loop.
     *
     * The name is not copied, and neither it nor the receiver may go away before the last signal.
     * May be called before there is a QCoreApplication.
     */
    void setup(int signalNumber, QObject* receiver, const char* method);

    /** The handler that is installed for all signals. */
    static void rawSignalHandle(int signalNumber);

public Q_SLOTS:
    /**
     * The usual target of SIGTERM and SIGINT: quits the event loop, and hands out at once the
     * signals that wait already. A second call, when that takes too long, exits with code 1.
     */
    void applicationQuit();

private Q_SLOTS:
    void initialize();
    void signalHandle();

private:
    PosixSignals();
    ~PosixSignals() override;

    QHash<int, std::pair<QObject*, const char*>> handlers;
    bool initialized = false;
    std::atomic<bool> quitting{false}; // the handler reads it
    std::atomic<int> waiting{0};       // numbers in the socket
    int sockets[2] = {-1, -1}; // the handler writes to the first, the notifier watches the second
    std::unique_ptr<QSocketNotifier> notifier;
};

/** @} */
