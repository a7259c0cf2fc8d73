#pragma once

#include <core/orvcore_export.h>

/** @addtogroup core
 * @{ */

class SingletonTrackerPrivate;

/** Base class of all objects in SingletonTracker; the libraries of a process share this type. */
class ORVCORE_EXPORT AbstractSingleton
{
public:
    virtual ~AbstractSingleton();
};

/**
 * The registry of a process's singletons. It owns them and finds them by name. clear() and the exit
 * of the process delete them, newest first, so a destructor may use older singletons.
 *
 * No operation waits for another. Only look-ups may overlap; in any other overlap, the later
 * operation ends the process with a fatal message that names the operation and, except for clear(),
 * the singleton. So register and remove singletons only at start-up and shut-down. A singleton's
 * destructor runs while the registry is locked: it must not call at(), insert(), erase() or
 * clear().
 *
 * Names are copied and compared byte for byte; a null name equals an empty one. Do not use the
 * registry after the process has destroyed its static objects. Thread-safety: any thread, within
 * these rules.
 */
class ORVCORE_EXPORT SingletonTracker
{
public:
    SingletonTracker();
    virtual ~SingletonTracker();
    SingletonTracker(const SingletonTracker&) = delete;
    SingletonTracker& operator=(const SingletonTracker&) = delete;

    /** Takes ownership. An earlier instance of that name is removed but not deleted. */
    static void insert(const char* name, AbstractSingleton* instance);

    /** The instance of that name, or null if there is none. The registry still owns it. */
    static AbstractSingleton* at(const char* name);

    /** Deletes the instance of that name, if there is one. */
    static void erase(const char* name);

    /** Deletes all instances, newest first. */
    static void clear();

    /** Whether no instance is registered. Takes no lock and never ends the process. */
    static bool isEmpty();

private:
    SingletonTrackerPrivate* const d;
};

/** @} */
