#include <core/posixsignals.h>

#include <core/log_p.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <utility>

#include <sys/socket.h>
#include <unistd.h>

namespace {

// Both go out with their final NUL.
constexpr char quittingText[] =
    "Signal caught when application is terminating, immediate termination...\n";
constexpr char lostSignalText[] =
    "Unable to pass signal information to application, immediate termination...\n";
static_assert(sizeof quittingText == 73 && sizeof lostSignalText == 76, "sizes are interface");
static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<int>::is_always_lock_free,
    "the handler must not lock");

/** One write, begun again when a signal interrupted it: that is no failure. */
bool writeWhole(int descriptor, const void* data, std::size_t size)
{
    ssize_t written = 0;
    do {
        written = write(descriptor, data, size);
    } while (written < 0 && errno == EINTR);
    return written == ssize_t(size);
}

/** One read, begun again likewise; false when no whole number came. */
bool readNumber(int descriptor, int& number)
{
    ssize_t length = 0;
    do {
        length = read(descriptor, &number, sizeof number);
    } while (length < 0 && errno == EINTR);
    return length == ssize_t(sizeof number);
}

} // namespace

PosixSignals PosixSignals::instance;

PosixSignals::PosixSignals() = default;

PosixSignals::~PosixSignals() = default;

void PosixSignals::setup(int signalNumber, QObject* receiver, const char* method)
{
    Q_ASSERT_X(receiver != nullptr, "PosixSignals::setup", "no receiver for the signal");
    Q_ASSERT_X(receiver->metaObject()->indexOfMethod(QByteArray(method) + "()") >= 0,
        "PosixSignals::setup", "the receiver has no such method without arguments");
    handlers[signalNumber] = {receiver, method};
    QTimer::singleShot(0, this, SLOT(initialize()));
}

void PosixSignals::rawSignalHandle(int signalNumber)
{
    const int interruptedErrno = errno;
    if (instance.quitting) {
        _exit(writeWhole(STDERR_FILENO, quittingText, sizeof quittingText) ? 2 : 1);
    }
    if (!writeWhole(instance.sockets[0], &signalNumber, sizeof signalNumber)) {
        _exit(writeWhole(STDERR_FILENO, lostSignalText, sizeof lostSignalText) ? 4 : 3);
    }
    ++instance.waiting; // last, so that a number that is counted is in the socket
    errno = interruptedErrno;
}

void PosixSignals::applicationQuit()
{
    static constexpr char here[] = "void PosixSignals::applicationQuit()";
    if (quitting) {
        ORV_LOG(warning, here) << "Cleanup taking too long, immediate termination...";
        std::exit(1);
    }
    ORV_LOG(debug, here) << "Cleaning up and terminating...";
    QCoreApplication::quit();
    quitting = true;
}

void PosixSignals::initialize()
{
    if (initialized) {
        return;
    }
    static constexpr char here[] = "void PosixSignals::initialize()";
    ORV_LOG(debug, here);
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, sockets) != 0) {
        // Goes on all the same: a signal then ends the process, rather than being missed.
        ORV_LOG(critical, here) << "Creating Unix socket failed";
        QCoreApplication::quit();
    }
    notifier = std::make_unique<QSocketNotifier>(sockets[1], QSocketNotifier::Read);
    connect(notifier.get(), SIGNAL(activated(int)), this, SLOT(signalHandle()));
    for (auto handler = handlers.cbegin(); handler != handlers.cend(); ++handler) {
        std::signal(handler.key(), rawSignalHandle);
    }
    initialized = true;
}

void PosixSignals::signalHandle()
{
    static constexpr char here[] = "void PosixSignals::signalHandle()";
    // The notifier may be due in the same pass of the event loop in which the program itself asked
    // to quit. The loop ends after this pass. If it goes on all the same, the notifier comes again.
    const bool wasQuitting = quitting;
    if (wasQuitting && !std::exchange(hasLetLoopEnd, true)) {
        return;
    }
    do {
        int signalNumber = -1;
        // A call that does not come from the notifier must not wait for a number.
        if ((sender() != notifier.get() && waiting <= 0) || !readNumber(sockets[1], signalNumber)) {
            ORV_LOG(warning, here) << "Could not read signal number from socket, ignoring";
            return;
        }
        --waiting;
        const auto [receiver, method] = handlers.value(signalNumber);
        const bool isQuit = receiver == this && qstrcmp(method, "applicationQuit") == 0;
        if (isQuit || quitting == wasQuitting) {
            ORV_LOG(debug, here) << "Processing signal" << signalNumber;
            QMetaObject::invokeMethod(receiver, method, Qt::AutoConnection);
        }
        // If this number began the quitting, the event loop reads no more. Of those that wait behind
        // it, only a second request to quit is obeyed.
    } while (quitting != wasQuitting && waiting > 0);
}
