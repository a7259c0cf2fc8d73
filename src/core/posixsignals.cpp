#include <core/posixsignals.h>

#include <core/log_p.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>

#include <cerrno>
#include <csignal>
#include <cstdlib>

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

} // namespace

PosixSignals PosixSignals::instance;

PosixSignals::PosixSignals() = default;

PosixSignals::~PosixSignals() = default;

void PosixSignals::setup(int signalNumber, QObject* receiver, const char* method)
{
    handlers[signalNumber] = {receiver, method};
    QTimer::singleShot(0, this, SLOT(initialize()));
}

void PosixSignals::rawSignalHandle(int signalNumber)
{
    const int interruptedErrno = errno;
    if (instance.quitting) {
        _exit(writeWhole(STDERR_FILENO, quittingText, sizeof quittingText) ? 2 : 1);
    }
    ++instance.waiting; // first, so that none is in the socket without being counted
    if (!writeWhole(instance.sockets[0], &signalNumber, sizeof signalNumber)) {
        _exit(writeWhole(STDERR_FILENO, lostSignalText, sizeof lostSignalText) ? 4 : 3);
    }
    errno = interruptedErrno;
}

void PosixSignals::applicationQuit()
{
    static constexpr char here[] = "void PosixSignals::applicationQuit()";
    if (quitting) {
        ORV_LOG(here).warning() << here << "Cleanup taking too long, immediate termination...";
        std::exit(1);
    }
    ORV_LOG(here).debug() << here << "Cleaning up and terminating...";
    QCoreApplication::quit();
    quitting = true;
    // The event loop ends here. A signal that waits already is not to be lost with it: a second
    // request to quit is obeyed at once. A slot that runs events may read further ones, and a read
    // that fails takes none away.
    for (int left = waiting; left > 0 && waiting > 0; --left) {
        signalHandle();
    }
}

void PosixSignals::initialize()
{
    if (initialized) {
        return;
    }
    static constexpr char here[] = "void PosixSignals::initialize()";
    ORV_LOG(here).debug() << here;
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, sockets) != 0) {
        // Goes on all the same: a signal then ends the process, rather than being missed.
        ORV_LOG(here).critical() << here << "Creating Unix socket failed";
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
    int signalNumber = -1;
    ssize_t length = 0;
    do {
        length = read(sockets[1], &signalNumber, sizeof signalNumber);
    } while (length < 0 && errno == EINTR);
    if (length < ssize_t(sizeof signalNumber)) {
        ORV_LOG(here).warning() << here << "Could not read signal number from socket, ignoring";
        return;
    }
    --waiting;
    ORV_LOG(here).debug() << here << "Processing signal" << signalNumber;
    const auto handler = handlers.constFind(signalNumber);
    if (handler != handlers.constEnd()) {
        QMetaObject::invokeMethod(handler->first, handler->second, Qt::AutoConnection);
    }
}
