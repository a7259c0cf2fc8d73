#include <QtTest>

/** A host that does not link the library itself: what plugins that use it left behind must outlive them. */
class UnloadingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void libraryStaysLoaded() {
        QLibrary library(QStringLiteral(TEST_LIBRARY));
        QVERIFY2(library.load() && library.unload(), qPrintable(library.errorString()));
        for (const char* name : {"Language", "QList<Language>", "PromptData", "RadioStation"}) {
            const QMetaType type(QMetaType::type(name));
            QVERIFY(type.isValid());
            type.destroy(type.create()); // by code of the library
        }
    }
};

QTEST_GUILESS_MAIN(UnloadingTest)
#include "unloadingtest.moc"
