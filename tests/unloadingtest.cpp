#include <QLibrary>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/** A host that does not link the library itself: what a plugin left behind must outlive the plugin. */
class UnloadingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pluginsComeAndGo() {
        const QTemporaryDir folder;
        for (int round = 0; round < 100; ++round) {
            const QString copy = folder.filePath(QString::number(round)); // no two are loaded in one place
            QVERIFY(QFile::copy(QStringLiteral(TEST_PLUGIN), copy));
            QLibrary plugin(copy);
            const auto newCode = reinterpret_cast<QByteArray* (*)()>(plugin.resolve("newCode"));
            QVERIFY2(newCode != nullptr, qPrintable(plugin.errorString()));
            const std::unique_ptr<QByteArray> code(newCode());
            QVERIFY(plugin.unload());
            QCOMPARE(*code, QByteArray("de_DE"));
            for (const char* name : {"Language", "QList<Language>", "PromptData", "RadioStation"}) {
                const int type = QMetaType::type(name);
                QMetaType::destroy(type, QMetaType::create(type));
                QVERIFY(type != QMetaType::UnknownType);
            }
        }
    }
};

QTEST_GUILESS_MAIN(UnloadingTest)
#include "unloadingtest.moc"
