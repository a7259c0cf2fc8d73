#include <core/parsers/jsonfile.h>

#include <support/helpers.h>
#include <support/logcapture.h>

#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>

class JsonFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void loadDocument()
    {
        const struct {
            QByteArray content;
            const char *level, *line;
        } rows[] = {
            // behind the signature
            {"{\"a\":1}", "debug: ", "Loaded: %1"},
            {"[1,2]", "debug: ", "Loaded: %1"},
            {QByteArray(), "warning: ", "%1 does not exist."},
            {"a folder", "warning: ", "Could not open for reading: %1"},
            {"", "critical: ", "Parsing %1 failed due to \"illegal value\" at 0"},
            {"[5", "critical: ", "Parsing %1 failed due to \"invalid termination by number\" at 2"},
            {"[] x", "critical: ", "Parsing %1 failed due to \"garbage at the end of the document\" at 3"},
        };
        for (const auto& row : rows) {
            const QTemporaryDir folder;
            const QString fileName = folder.filePath(u("Größe.json"));
            if (row.content == "a folder") {
                QVERIFY(QDir().mkdir(fileName));
            } else {
                QVERIFY(row.content.isNull() || writeFile(fileName, row.content));
            }
            LogCapture log;
            QCOMPARE(JsonFile::loadDocument(fileName).isNull(), u(row.level) != u("debug: "));
            const QString signature = u("static QJsonDocument JsonFile::loadDocument(const QString&)");
            QCOMPARE(log.takeLines(),
                QStringList(u(row.level) + signature + u(" ") + u(row.line).arg(u("\"%1\"").arg(fileName))
                            + u(" (src/core/parsers/jsonfile.cpp, ") + signature + u(", default)")));
        }
    }

    void value_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QJsonValue>("expected");

        QTest::newRow("nested") << "a/b" << QJsonValue(5);
        QTest::newRow("null is found") << "a/n" << QJsonValue();
        QTest::newRow("array") << "a/arr" << QJsonValue(QJsonArray{1});
        QTest::newRow("object") << "é" << QJsonValue(QJsonObject{{QString(), 3}});
        QTest::newRow("empty last key") << "é/" << QJsonValue(3);
        QTest::newRow("empty path") << "" << QJsonValue(QJsonObject{{u("a"), 7}});
        QTest::newRow("leading slash") << "/a" << QJsonValue(7);
        for (const char* path : {"a/arr/0", "a/x", "x", "a/b/c", "a//b", "a/b/", "A/b", "k/l"}) {
            QTest::addRow("missing: %s", path) << path << QJsonValue(u("default"));
        }
    }
    void value()
    {
        QFETCH(QString, path);
        const JsonPath root(QJsonDocument::fromJson(R"({"a": {"b": 5, "n": null, "arr": [1]},
            "é": {"": 3}, "": {"a": 7}, "k/l": 1})"));
        QTEST(root.value(path, u("default")), "expected");
    }

    void rootIsAlwaysAnObject()
    {
        QVERIFY(JsonPath(QJsonDocument()).isEmpty());
        QVERIFY(JsonPath(QJsonDocument::fromJson("[1]")).isEmpty());
        QVERIFY(!JsonPath(QJsonObject{{u("a"), 1}}).isEmpty());
    }
};

QTEST_APPLESS_MAIN(JsonFileTest)
#include "jsonfiletest.moc"
