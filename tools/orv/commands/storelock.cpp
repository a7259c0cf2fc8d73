#include "commands/storelock.h"

namespace {

constexpr int waitingTime = 3000; // milliseconds
constexpr int mostLinks = 40;     // the limit of the system

QString holderOf(const QLockFile& lock)
{
    qint64 process = 0;
    QString host;
    QString program;
    return lock.getLockInfo(&process, &host, &program)
               ? u"process %1 (%2) on %3"_s.arg(process).arg(program, host)
               : u"an unknown process"_s;
}

} // namespace

QString lockFileOf(const QString& storeFile)
{
    QFileInfo store(storeFile);
    for (int i = 0; i < mostLinks && store.isSymLink(); ++i) {
        store.setFile(store.symLinkTarget());
    }
    const QString folder = QFileInfo(store.path()).canonicalFilePath();
    return folder.isEmpty() ? QString() : QDir(folder).filePath(store.fileName() + u".lock"_s);
}

StoreLock::StoreLock(const QString& storeFile)
    : file(lockFileOf(storeFile))
    , lock(file)
{
    failIf(file.isNull(), u"\"%1\": no such folder"_s.arg(storeFile));
    // Hashing may take long: a lock ends with its process, not at a certain age.
    lock.setStaleLockTime(0);
    if (lock.tryLock(waitingTime)) {
        return;
    }
    failIf(lock.error() != QLockFile::LockFailedError,
        u"\"%1\" cannot be locked: cannot write \"%2\""_s.arg(storeFile, file));
    throw Failure{u"\"%1\" is locked by %2; if that has ended, remove \"%3\""_s.arg(
        storeFile, holderOf(lock), file)};
}
