#include <core/orvglobalinstance.h>

#include <support/childprocess.h>
#include <support/helpers.h>

#include <cstdio>
#include <functional>

namespace {

QByteArray deleted; // the names of the singletons in order of deletion

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
    const char *name, *steps; // "1one" registers the instance 1 as "one", "-one" erases the name, "!" clears
    QByteArray deleted;       // the instances in order of deletion; f is never deleted, 0 is null
} registrations[] = {{"the newest first", "1one 2two 3three -none -two 4four !", "2431"},
    {"an instance that replaces another is the newest", "fa bb aa ! cc Aa -a 0d !", "abAc"},
    {"one erase() removes a replaced name", "fe ee -e", "e"}};

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

/** Runs one case; only called in a child process. */
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

class OrvGlobalInstanceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        deleted.clear();
        QVERIFY(SingletonTracker::isEmpty());
    }

    void deletionOrder_data() { addRows(registrations); }
    void deletionOrder() {
        const auto& row = currentRow(registrations);
        Singleton forgotten('f');
        const QList<QByteArray> steps = QByteArray(row.steps).split(' ');
        for (const QByteArray& step : steps) {
            const char* const name = step.constData() + 1;
            switch (step[0]) {
            case '!': SingletonTracker::clear(); break;
            case '-': SingletonTracker::erase(name); break;
            case '0': SingletonTracker::insert(name, nullptr); break;
            case 'f': SingletonTracker::insert(name, &forgotten); break;
            default: SingletonTracker::insert(name, new Singleton(step[0]));
            }
        }
        QVERIFY(SingletonTracker::isEmpty() && SingletonTracker::at("e") == nullptr);
        QCOMPARE(deleted, row.deleted);
    }

    void nameChangedByTheDestructor() {
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
        const char twin[] = {'a', '\0', 'x'}; // a name ends at its first NUL
        QVERIFY(isAlwaysTrue(32, 20'000, [&](int) { return SingletonTracker::at(twin) == singleton; }));
        QCOMPARE(SingletonTracker::at("A"), nullptr);
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
