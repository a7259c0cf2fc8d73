#include "commands/storelock.h"

#include "shell/failure.h"

#include <QDir>
#include <QFileInfo>

namespace {

constexpr int waitingTime = 5000; // milliseconds
constexpr int mostLinks = 40;     // as many as the system follows

QString holderOf(const QLockFile& lock)
{
    qint64 process = 0;
    QString host;
    QString program;
    return lock.getLockInfo(&process, &host, &program)
               ? QStringLiteral("process %1 (%2) on %3").arg(process).arg(program, host)
               : QStringLiteral("an unknown process");
}

} // namespace

QString lockFileOf(const QString& storeFile)
{
    QFileInfo store(storeFile);
    for (int i = 0; i < mostLinks && store.isSymLink(); ++i) {
        store.setFile(store.symLinkTarget());
    }
    const QString folder = QFileInfo(store.path()).canonicalFilePath();
    return folder.isEmpty() ? QString()
                            : QDir(folder).filePath(store.fileName() + QStringLiteral(".lock"));
}

StoreLock::StoreLock(const QString& storeFile)
    : file(lockFileOf(storeFile))
    , lock(file)
{
    if (file.isNull()) {
        throw Failure{QStringLiteral("\"%1\": no such folder").arg(storeFile)};
    }
    // Hashing takes its time: a lock ends with its process, and not by its age.
    lock.setStaleLockTime(0);
    if (lock.tryLock(waitingTime)) {
        return;
    }
    if (lock.error() != QLockFile::LockFailedError) {
        throw Failure{
            QStringLiteral("\"%1\" cannot be locked: cannot write \"%2\"").arg(storeFile, file)};
    }
    throw Failure{QStringLiteral("\"%1\" is locked by %2; if that has ended, remove \"%3\"")
                      .arg(storeFile, holderOf(lock), file)};
}
