#include <core/orvglobalinstance.h>

#include <core/log_p.h>

#include <QByteArray>
#include <QGlobalStatic>
#include <QHash>
#include <QReadWriteLock>
#include <QStack>

namespace {

/** Ends the process with a message that names the operation and the singleton. */
[[noreturn]] void reportDeadlock(const char* signature, const QByteArray& name)
{
    ORV_LOGGER(signature).fatal("Deadlock: in %s with %s", signature, name.constData());
}

} // namespace

class SingletonTrackerPrivate
{
public:
    virtual ~SingletonTrackerPrivate();

    // Copies of the name: the original may be a part of the instance that is deleted.
    void insert(const QByteArray& name, AbstractSingleton* instance);
    AbstractSingleton* at(const QByteArray& name);
    void erase(const QByteArray& name);
    void clear();
    bool isEmpty() const;

private:
    QHash<QByteArray, AbstractSingleton*> registry;
    QStack<QByteArray> order; // the newest on top; holds a name twice if it is registered twice
    QReadWriteLock lock;      // only tried: no operation waits for another
};

SingletonTrackerPrivate::~SingletonTrackerPrivate()
{
    clear();
}

void SingletonTrackerPrivate::insert(const QByteArray& name, AbstractSingleton* instance)
{
    if (!lock.tryLockForWrite()) {
        reportDeadlock(
            "void SingletonTrackerPrivate::insert(const char*, AbstractSingleton*)", name);
    }
    registry.insert(name, instance);
    order.push(name);
    lock.unlock();
}

AbstractSingleton* SingletonTrackerPrivate::at(const QByteArray& name)
{
    if (!lock.tryLockForRead()) {
        reportDeadlock("AbstractSingleton* SingletonTrackerPrivate::at(const char*)", name);
    }
    AbstractSingleton* const instance = registry.value(name);
    lock.unlock();
    return instance;
}

void SingletonTrackerPrivate::erase(const QByteArray& name)
{
    if (!lock.tryLockForWrite()) {
        reportDeadlock("void SingletonTrackerPrivate::erase(const char*)", name);
    }
    const auto entry = registry.constFind(name);
    if (entry != registry.constEnd()) {
        delete *entry;
        registry.erase(entry);
        order.removeOne(name);
    }
    lock.unlock();
}

void SingletonTrackerPrivate::clear()
{
    if (!lock.tryLockForWrite()) {
        static constexpr char here[] = "void SingletonTrackerPrivate::clear()";
        ORV_LOGGER(here).fatal("Deadlock: in %s", here);
    }
    while (!registry.isEmpty()) {
        const QByteArray name = order.top();
        delete registry.value(name); // null if an earlier round has removed the name
        order.pop();
        registry.remove(name);
    }
    lock.unlock();
}

bool SingletonTrackerPrivate::isEmpty() const
{
    return registry.isEmpty();
}

namespace {

Q_GLOBAL_STATIC(SingletonTracker, tracker)

} // namespace

AbstractSingleton::~AbstractSingleton() = default;

SingletonTracker::SingletonTracker()
    : d(new SingletonTrackerPrivate)
{}

SingletonTracker::~SingletonTracker()
{
    // A plain pointer is still set while the singletons are deleted, so a singleton that calls back
    // finds the registry locked. A smart pointer may already be null.
    delete d;
}

void SingletonTracker::insert(const char* name, AbstractSingleton* instance)
{
    tracker()->d->insert(name, instance);
}

AbstractSingleton* SingletonTracker::at(const char* name)
{
    return tracker()->d->at(name);
}

void SingletonTracker::erase(const char* name)
{
    tracker()->d->erase(name);
}

void SingletonTracker::clear()
{
    tracker()->d->clear();
}

bool SingletonTracker::isEmpty()
{
    return tracker()->d->isEmpty();
}
