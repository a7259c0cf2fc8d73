#include <QtTest>

/** Unloads the library like a plugin: the meta-types that it has registered must stay usable. */
class UnloadingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void libraryStaysLoaded() {
        QLibrary library(QStringLiteral(TEST_LIBRARY));
        QVERIFY2(library.load() && library.unload(), qPrintable(library.errorString()));
        for (const char* name : {"Language", "QList<Language>", "PromptData", "RadioStation"}) {
            const QMetaType type(QMetaType::type(name));
            QVERIFY(type.isValid());
            type.destroy(type.create()); // runs code of the library
        }
    }
};

QTEST_GUILESS_MAIN(UnloadingTest)
#include "unloadingtest.moc"
