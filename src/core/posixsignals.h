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
 * The signal handler writes the signal's number to a socket pair. It may run in any thread, calls
 * only write and _exit, uses lock-free atomics, and preserves errno. The event loop reads one
 * number at a time, in order, and invokes the method set up for it. So the application handles a
 * signal like any other event.
 *
 * Set up all signals before the event loop first runs: it then installs the handlers. Later,
 * setup() can only change the target of a signal that has a handler. Signals that arrive before the
 * handlers are installed are not caught.
 *
 * The socket holds a few hundred numbers. If it is full, the interrupted thread waits in the
 * handler until the event loop has read one. If that is the thread of the event loop, or the event
 * loop has ended, the process may hang until SIGKILL ends it. So do not set up a signal that may
 * arrive hundreds of times while the event loop is busy. The sockets stay open until the process
 * ends, and child processes inherit them. A child that does not call exec must not use the bridge.
 *
 * Exit codes:
 * - 1: a second request to quit; logs a warning
 * - 2: a signal while the application is quitting; writes one line to standard error
 * - 4: the handler could not pass a number on; writes one line to standard error
 * - 1 instead of 2, and 3 instead of 4, if that line cannot be written; if standard error is a
 *   broken pipe, SIGPIPE ends the process instead
 *
 * Thread-safety: apart from the handler, use everything from the thread that loaded the library,
 * usually the main thread.
 */
class ORVCORE_EXPORT PosixSignals : public QObject
{
    Q_OBJECT

public:
    /** The only instance. */
    static PosixSignals instance;

    /**
     * Sets or replaces the method that a signal invokes: @p method is the name of a slot or
     * invokable method of @p receiver without arguments. It runs at once if the receiver lives in
     * the bridge's thread, and otherwise in the event loop of the receiver's thread.
     *
     * The name is not copied and must outlive the registration. A receiver may be deleted in the
     * bridge's thread and then gets no more signals. Debug builds assert that the receiver is not
     * null and has the method at the time of the call; in other builds a signal without a method has
     * no effect. setup() may be called before a QCoreApplication exists.
     */
    void setup(int signalNumber, QObject* receiver, const char* method);

    /** The handler that is installed for all signals. */
    static void rawSignalHandle(int signalNumber);

public Q_SLOTS:
    /**
     * The usual target of SIGTERM and SIGINT: quits the event loop. A second call calls exit(1).
     *
     * A request to quit that is already waiting counts as the second call if a signal started the
     * quitting, but not if the program itself called this function. Other waiting signals are no
     * longer handled.
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
    bool isActivated = false;          // the notifier is calling signalHandle()
    bool mayBeStale = false;           // the notifier may fire for a number that is already read
    std::atomic<bool> quitting{false}; // read by the handler
    std::atomic<int> waiting{0};       // never more than the numbers in the socket
    int sockets[2] = {-1, -1}; // the handler writes to the first, the notifier watches the second
    std::unique_ptr<QSocketNotifier> notifier;
};

/** @} */
