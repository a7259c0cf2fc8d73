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

// Written with their final NUL.
constexpr char quittingText[] =
    "Signal caught when application is terminating, immediate termination...\n";
constexpr char lostSignalText[] =
    "Unable to pass signal information to application, immediate termination...\n";
static_assert(sizeof quittingText == 73 && sizeof lostSignalText == 76, "sizes are interface");
static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<int>::is_always_lock_free,
    "the handler must not lock");

/** Writes all bytes in one call, which is repeated if a signal interrupts it. */
bool writeWhole(int descriptor, const void* data, std::size_t size)
{
    ssize_t written = 0;
    do {
        written = write(descriptor, data, size);
    } while (written < 0 && errno == EINTR);
    return written == ssize_t(size);
}

/** Reads a number in the same way. @return false if it is missing or incomplete */
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
    Q_ASSERT_X(receiver->metaObject()->indexOfMethod(
                   QMetaObject::normalizedSignature(QByteArray(method) + "()"))
                   >= 0,
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
    ++instance.waiting; // last: a counted number must be in the socket
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
    QCoreApplication::exit(); // quit() of Qt 6 ignores a loop that is not the application's
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
        // Continue all the same, so that a signal ends the process instead of being lost.
        ORV_LOG(critical, here) << "Creating Unix socket failed";
        QCoreApplication::exit();
    }
    notifier = std::make_unique<QSocketNotifier>(sockets[1], QSocketNotifier::Read);
    connect(notifier.get(), &QSocketNotifier::activated, this, [this] {
        isActivated = true;
        signalHandle();
    });
    for (auto handler = handlers.cbegin(); handler != handlers.cend(); ++handler) {
        std::signal(handler.key(), rawSignalHandle);
    }
    initialized = true;
}

void PosixSignals::signalHandle()
{
    static constexpr char here[] = "void PosixSignals::signalHandle()";
    const bool isActivation = std::exchange(isActivated, false);
    if (isActivation && std::exchange(mayBeStale, false)) {
        return; // if a number waits, the notifier fires again
    }
    const bool wasQuitting = quitting;
    do {
        int signalNumber = -1;
        if ((!isActivation && waiting <= 0) || !readNumber(sockets[1], signalNumber)) {
            ORV_LOG(warning, here) << "Could not read signal number from socket, ignoring";
            return;
        }
        --waiting;
        mayBeStale = !isActivation;
        const auto [receiver, method] = handlers.value(signalNumber);
        const bool isQuit = receiver == this && qstrcmp(method, "applicationQuit") == 0;
        if (wasQuitting && isQuit) {
            QCoreApplication::exit(); // it was waiting when the program quit: not a second request
        } else if (isQuit || !quitting) {
            ORV_LOG(debug, here) << "Processing signal" << signalNumber;
            QMetaObject::invokeMethod(receiver, method, Qt::AutoConnection);
        }
        // If this number started the quitting, the event loop reads no further ones. Of the waiting
        // numbers, only a second request to quit is handled.
    } while (quitting != wasQuitting && waiting > 0);
}
