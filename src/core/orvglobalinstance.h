#pragma once

#include <core/orvcore_export.h>

/** @addtogroup core
 * @{ */

class SingletonTrackerPrivate;

/** The base of every object that SingletonTracker owns; one type across all libraries. */
class ORVCORE_EXPORT AbstractSingleton
{
public:
    virtual ~AbstractSingleton();
};

/**
 * The registry of a process's singletons. It owns them, finds them by name, and deletes them, the
 * newest first, when it is cleared or the process exits; so a singleton may use the older ones to
 * its end.
 *
 * Contention is a deadlock in the making: no operation waits for another one, and whichever meets a
 * running one ends the process by a fatal message that names the operation and the singleton. Only
 * look-ups may overlap. Registering and removing belongs into start-up and
 * shut-down. A singleton's destructor runs while the registry is locked: it must not call at(),
 * insert(), erase() or clear().
 *
 * Names are copied, and compared as bytes; a null name is an empty one. No operation may be called
 * any more once the process has destroyed its statics. Thread-safety: any thread, within the above.
 */
class ORVCORE_EXPORT SingletonTracker
{
public:
    SingletonTracker();
    virtual ~SingletonTracker();
    SingletonTracker(const SingletonTracker&) = delete;
    SingletonTracker& operator=(const SingletonTracker&) = delete;

    /** Takes ownership; an instance that had the name before is forgotten, and not deleted. */
    static void insert(const char* name, AbstractSingleton* instance);

    /** The instance of that name, which stays the registry's; null when there is none. */
    static AbstractSingleton* at(const char* name);

    /** Deletes the instance of that name, if there is one. */
    static void erase(const char* name);

    /** Deletes all instances, the newest first. */
    static void clear();

    /** Whether there is no instance. A snapshot: it takes no lock, and never fails. */
    static bool isEmpty();

private:
    SingletonTrackerPrivate* const d;
};

/** @} */
