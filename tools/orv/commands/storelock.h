#pragma once

#include <QLockFile>
#include <QString>

/**
 * The lock of a checksum store, which may not exist yet. It lies beside the file itself, so that all
 * links to the file mean one lock; null when there is no such folder.
 */
QString lockFileOf(const QString& storeFile);

/** Keeps other processes that take the lock from changing a store while it lives. */
class StoreLock
{
public:
    /** Waits a few seconds. @throw Failure when another process holds the lock for longer */
    explicit StoreLock(const QString& storeFile);

private:
    const QString file;
    QLockFile lock;
};
