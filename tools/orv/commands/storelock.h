#pragma once

#include <QLockFile>
#include <QString>

/**
 * The path of the lock file of a checksum store, which may not exist yet. It is beside the file
 * itself, so all links to the file share one lock. Null if there is no such folder.
 */
QString lockFileOf(const QString& storeFile);

/** While it exists, no other process can lock the store. */
class StoreLock
{
public:
    /** Waits a few seconds. @throw Failure if another process holds the lock for longer */
    explicit StoreLock(const QString& storeFile);

private:
    const QString file;
    QLockFile lock;
};
