#pragma once

#include <core/orvcore_export.h>

#include <QHash>
#include <QObject>
#include <QPointer>

#include <atomic>
#include <memory>
#include <utility>

/** @addtogroup core
 * @{ */

class QSocketNotifier;

/**
 * Delivers POSIX signals to slots on the event loop, and ends the process in two stages.
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
 * The signal handler writes the signal's number to a socket pair. It runs in any thread, calls only
 * write and _exit, reads and counts in lock-free atomics, and leaves errno as it was. The event loop
 * reads one number at a time, in their order, and invokes what was set up for it. So the application
 * handles a signal like any other event.
 *
 * All signals must be set up before the event loop first runs, which installs the handlers. Later,
 * setup() only changes the target of a signal that was set up in time. Signals that come before the
 * handlers are installed are not caught.
 *
 * The socket holds a few hundred numbers. When it is full, the interrupted thread waits in the
 * handler until the event loop has read one. If that thread is the event loop's own, nobody reads:
 * the process hangs, and only SIGKILL ends it. So do not set up a signal that may come in hundreds
 * while the event loop is busy. Child processes inherit the sockets, which stay open until the
 * process ends. A child that goes on without exec must not use the bridge.
 *
 * Exit codes: 1 after a second request to quit, with a warning in the log; 2 after a signal when
 * the application is already quitting, and 4 when the handler could not pass a number on, each with
 * one line on standard error. In the handler, 1 and 3 take the place of 2 and 4 when not even that
 * line could be written; a broken pipe there ends the process by SIGPIPE instead.
 *
 * Thread-safety: apart from the handler, everything belongs to the thread that loaded the library,
 * usually the main thread.
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
     * The name is not copied and must outlive the registration. A receiver that is deleted, in the
     * thread of the bridge, gets no more signals. Debug builds stop at a null receiver and at a name
     * that is none of the receiver's methods without arguments; in other builds such a signal does
     * nothing. May be called before there is a QCoreApplication.
     */
    void setup(int signalNumber, QObject* receiver, const char* method);

    /** The handler that is installed for all signals. */
    static void rawSignalHandle(int signalNumber);

public Q_SLOTS:
    /**
     * The usual target of SIGTERM and SIGINT: quits the event loop. A second call exits with code 1.
     *
     * If a signal began the quitting and a second request waits behind it, that is a second call.
     * No other signal that waits is handled any more, because the event loop ends.
     */
    void applicationQuit();

private Q_SLOTS:
    void initialize();
    void signalHandle();

private:
    PosixSignals();
    ~PosixSignals() override;

    QHash<int, std::pair<QPointer<QObject>, const char*>> handlers;
    bool initialized = false;
    bool hasLetLoopEnd = false;        // one activation was left out after the quitting began
    std::atomic<bool> quitting{false}; // the handler reads it
    std::atomic<int> waiting{0};       // numbers in the socket, or fewer; the handler counts up
    int sockets[2] = {-1, -1}; // the handler writes to the first, the notifier watches the second
    std::unique_ptr<QSocketNotifier> notifier;
};

/** @} */
