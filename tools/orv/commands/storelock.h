#pragma once

#include "shell/output.h"

/**
 * The path of the lock file of a checksum store, which may not exist yet. It is beside the file
 * itself, so all links to the file share one lock. Null if that folder does not exist.
 */
QString lockFileOf(const QString& storeFile);

/** Holds the lock of a store: no other process can lock it meanwhile. */
class StoreLock
{
public:
    /** Waits a few seconds. @throw Failure if another process holds the lock for longer */
    explicit StoreLock(const QString& storeFile);

private:
    const QString file;
    QLockFile lock;
};
