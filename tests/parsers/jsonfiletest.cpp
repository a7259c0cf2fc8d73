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
    void loadDocument_data()
    {
        QTest::addColumn<QByteArray>("content"); // null: no file, "/": a folder
        QTest::addColumn<int>("level");
        QTest::addColumn<QString>("line"); // behind the signature, with %1 for the file name

        const auto row = [](const char* content, QtMsgType level, const char* line) {
            QTest::newRow(line) << QByteArray(content) << int(level) << u(line);
        };
        row("{\"a\":1}", QtDebugMsg, "Loaded: %1");
        row("[1,2]", QtDebugMsg, "Loaded: %1");
        row(nullptr, QtWarningMsg, "%1 does not exist.");
        row("/", QtWarningMsg, "Could not open for reading: %1");
        row("", QtCriticalMsg, "Parsing %1 failed due to \"illegal value\" at 0");
        row("[5", QtCriticalMsg, "Parsing %1 failed due to \"invalid termination by number\" at 2");
        row("[] x", QtCriticalMsg, "Parsing %1 failed due to \"garbage at the end of the document\" at 3");
    }
    void loadDocument()
    {
        QFETCH(QByteArray, content);
        QFETCH(int, level);
        QFETCH(QString, line);
        const QTemporaryDir folder;
        const QString fileName = folder.filePath(u("Größe.json"));
        if (content == "/") {
            QVERIFY(QDir().mkdir(fileName));
        } else if (!content.isNull()) {
            QVERIFY(writeFile(fileName, content));
        }
        LogCapture log;
        QCOMPARE(JsonFile::loadDocument(fileName).isNull(), level != QtDebugMsg);
        const QVector<LogLine> lines = log.takeLines();
        QCOMPARE(lines.size(), 1);
        const QString signature = u("static QJsonDocument JsonFile::loadDocument(const QString&)");
        QCOMPARE(int(lines[0].type), level);
        QCOMPARE(lines[0].text, signature + u(" ") + line.arg(u("\"%1\"").arg(fileName)));
        QCOMPARE(lines[0].function, signature);
        QCOMPARE(lines[0].file, u("src/core/parsers/jsonfile.cpp"));
        QCOMPARE(lines[0].category, u("default"));
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
