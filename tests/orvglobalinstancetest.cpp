#include <core/orvglobalinstance.h>

#include <support/childprocess.h>
#include <support/helpers.h>

#include <cstdio>
#include <functional>

namespace {

QByteArray deleted; // the names of the singletons, in the order of their deletion

struct Singleton : AbstractSingleton {
    explicit Singleton(char name, std::function<void()> atEnd = nullptr)
        : name(name)
        , atEnd(std::move(atEnd)) {}
    ~Singleton() override {
        deleted += name;
        if (atEnd) { atEnd(); }
    }

    const char name;
    const std::function<void()> atEnd;
};

const struct {
    void (*call)();
    QByteArray place;
} operations[] = {
    {[] { SingletonTracker::at("other"); }, "AbstractSingleton* SingletonTrackerPrivate::at(const char*) with other"},
    {[] { SingletonTracker::at(nullptr); }, "AbstractSingleton* SingletonTrackerPrivate::at(const char*) with "},
    {[] { SingletonTracker::insert("other", nullptr); },
        "void SingletonTrackerPrivate::insert(const char*, AbstractSingleton*) with other"},
    {[] { SingletonTracker::erase("other"); }, "void SingletonTrackerPrivate::erase(const char*) with other"},
    {SingletonTracker::clear, "void SingletonTrackerPrivate::clear()"},
};

/** One case, in a process of its own. */
int runCase(const QByteArray& name, void (*call)()) {
    if (name == "exit") {
        const auto print = [] { std::printf("%s ", deleted.constData()); };
        for (const char* singleton : {"a", "b", "c"}) {
            SingletonTracker::insert(singleton, new Singleton(*singleton, print));
        }
    } else if (name.startsWith("re-entry")) {
        SingletonTracker::insert("a", new Singleton('a', call));
        if (name == "re-entry") { SingletonTracker::clear(); }
    } else {
        QSemaphore isInside;
        QSemaphore never;
        SingletonTracker::insert("a", new Singleton('a', [&] {
            isInside.release();
            never.acquire();
        }));
        std::thread([] { SingletonTracker::erase("a"); }).detach();
        isInside.acquire();
        call();
    }
    return 0;
}

} // namespace

class OrvGlobalInstanceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() {
        deleted.clear();
        QVERIFY(SingletonTracker::isEmpty());
    }

    void ownsAndFinds() {
        auto* const second = new Singleton('2');
        const char twin[] = {'t', 'w', 'o', '\0', 'x'}; // a name ends with its NUL
        SingletonTracker::insert("one", new Singleton('1'));
        SingletonTracker::insert("two", second);
        SingletonTracker::insert("three", new Singleton('3'));
        QCOMPARE(SingletonTracker::at(twin), second);
        QCOMPARE(SingletonTracker::at("Two"), nullptr);
        SingletonTracker::erase("none");
        SingletonTracker::erase("two");
        QCOMPARE(SingletonTracker::at("two"), nullptr);
        SingletonTracker::insert("four", new Singleton('4'));
        SingletonTracker::clear();
        QCOMPARE(deleted, QByteArray("2431"));
    }

    void aNameRegisteredTwice() {
        const std::unique_ptr<Singleton> forgotten(new Singleton('f'));
        SingletonTracker::insert("a", forgotten.get());
        SingletonTracker::insert("b", new Singleton('b'));
        SingletonTracker::insert("a", new Singleton('a')); // now newer than b
        SingletonTracker::clear();
        QCOMPARE(deleted, QByteArray("ab")); // and the older name is left over, below what comes
        SingletonTracker::insert("c", new Singleton('c'));
        SingletonTracker::insert("a", new Singleton('A'));
        SingletonTracker::erase("a"); // takes the left-over name, not the one on top
        SingletonTracker::insert("d", nullptr);
        SingletonTracker::clear();
        QCOMPARE(deleted, QByteArray("abAc"));

        const std::unique_ptr<Singleton> alsoForgotten(new Singleton('f'));
        SingletonTracker::insert("e", alsoForgotten.get());
        SingletonTracker::insert("e", new Singleton('e'));
        SingletonTracker::erase("e");
        QVERIFY(SingletonTracker::isEmpty() && SingletonTracker::at("e") == nullptr);
        QCOMPARE(deleted, QByteArray("abAce"));
    }

    void aNameThatGoesWithTheInstance() {
        char name[] = "n";
        SingletonTracker::insert("a", new Singleton('a'));
        SingletonTracker::insert(name, new Singleton('n', [&name] { *name = 'a'; }));
        SingletonTracker::erase(name);
        SingletonTracker::insert(nullptr, new Singleton('0'));
        QVERIFY(SingletonTracker::at("") != nullptr);
        SingletonTracker::clear();
        QCOMPARE(deleted, QByteArray("n0a"));
    }

    void lookUpsNeverCollide() {
        auto* const singleton = new Singleton('a');
        SingletonTracker::insert("a", singleton);
        QVERIFY(isAlwaysTrue(32, 20'000, [singleton](int) { return SingletonTracker::at("a") == singleton; }));
        SingletonTracker::clear();
    }

    void processExitDeletesNewestFirst() {
        const ChildResult result = runChild({u("exit"), u("0")});
        QCOMPARE(result.output, QByteArray("c cb cba "));
        QCOMPARE(result.exitCode, 0);
    }

    void contentionIsFatal() {
        for (int i = 0; i < int(std::size(operations)); ++i) {
            for (const char* situation : {"re-entry", "re-entry at exit", "other thread"}) {
                const ChildResult result = runChild({u(situation), QString::number(i)});
                QVERIFY(result.isCrash);
                QCOMPARE(result.error, "Deadlock: in " + operations[i].place + '\n');
            }
        }
    }
};

int main(int argc, char** argv) {
    if (argc == 3) { return runCase(argv[1], operations[QByteArray(argv[2]).toInt()].call); }
    QCoreApplication application(argc, argv);
    OrvGlobalInstanceTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "orvglobalinstancetest.moc"
