#include <core/parsers/jsonfile.h>

#include <support/logcapture.h>

#include <QFile>
#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QString signature =
    QStringLiteral("static QJsonDocument JsonFile::loadDocument(const QString&)");

} // namespace

class JsonFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void loadDocument_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("level");
        QTest::addColumn<QString>("line"); // behind the signature, with %1 for the quoted file name

        const struct
        {
            const char *name, *content, *level, *line;
        } rows[] = {
            {"object", "{\"a\":1}", "debug", "Loaded: %1"},
            {"empty object", "{}", "debug", "Loaded: %1"},
            {"array", "[1,2]", "debug", "Loaded: %1"},
            {"no file", nullptr, "warning", "%1 does not exist."},
            {"empty file", "", "critical", "Parsing %1 failed due to \"illegal value\" at 0"},
            {"broken", "{\"a\":1", "critical",
                "Parsing %1 failed due to \"invalid termination by number\" at 6"},
            {"scalar", "null", "critical", "Parsing %1 failed due to \"illegal value\" at 1"},
            {"garbage behind", "[] x", "critical",
                "Parsing %1 failed due to \"garbage at the end of the document\" at 3"},
        };
        for (const auto& row : rows) {
            QTest::newRow(row.name) << QByteArray(row.content) << QString::fromUtf8(row.level)
                                    << QString::fromUtf8(row.line);
        }
    }
    void loadDocument()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, level);
        QFETCH(QString, line);
        const QTemporaryDir folder;
        // Non-ASCII stays readable in the log, a quote is escaped there.
        const QString fileName = folder.filePath(QStringLiteral("Größe \"1\".json"));
        if (!content.isNull()) {
            QFile file(fileName);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(content);
        }
        LogCapture log;
        QCOMPARE(JsonFile::loadDocument(fileName).isNull(), level != QLatin1String("debug"));
        QString quoted = fileName;
        quoted.replace(QLatin1Char('"'), QLatin1String("\\\""));
        QCOMPARE(
            log.takeTexts(), QStringList(level + QLatin1String(": ") + signature + QLatin1Char(' ')
                                         + line.arg(QLatin1Char('"') + quoted + QLatin1Char('"'))));
    }

    void unreadableFile()
    {
        const QTemporaryDir folder; // exists, but cannot be opened as a file
        LogCapture log;
        QVERIFY(JsonFile::loadDocument(folder.path()).isNull());
        const QVector<LogLine> lines = log.takeLines();
        QCOMPARE(lines.size(), 1);
        QCOMPARE(lines[0].type, QtWarningMsg);
        QCOMPARE(lines[0].text, signature + QLatin1String(" Could not open for reading: \"")
                                    + folder.path() + QLatin1Char('"'));
        QCOMPARE(lines[0].function, signature);
        QCOMPARE(lines[0].file, QStringLiteral("src/core/parsers/jsonfile.cpp"));
        QCOMPARE(lines[0].category, QStringLiteral("default"));
    }

    void value_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QJsonValue>("expected");

        const QJsonValue missing(QStringLiteral("default"));
        QTest::newRow("nested") << "a/b" << QJsonValue(5);
        QTest::newRow("null is found") << "a/n" << QJsonValue();
        QTest::newRow("array") << "a/arr" << QJsonValue(QJsonArray{1});
        QTest::newRow("object") << "é" << QJsonValue(QJsonObject{{QString(), 3}});
        QTest::newRow("empty last key") << "é/" << QJsonValue(3);
        QTest::newRow("empty path is the empty key")
            << "" << QJsonValue(QJsonObject{{QStringLiteral("a"), 7}});
        QTest::newRow("leading slash") << "/a" << QJsonValue(7);
        for (const char* path :
            {"a/arr/0", "a/x", "x", "a/b/c", "a//b", "a/b/", "A/b", "a/n/b", "//a", "k/l"}) {
            QTest::addRow("missing: %s", path) << path << missing;
        }
    }
    void value()
    {
        QFETCH(QString, path);
        const JsonPath root(QJsonDocument::fromJson(R"({"a": {"b": 5, "n": null, "arr": [1]},
            "é": {"": 3}, "": {"a": 7}, "k/l": 1})"));
        QTEST(root.value(path, QStringLiteral("default")), "expected");
    }

    void rootIsAlwaysAnObject()
    {
        QVERIFY(JsonPath(QJsonDocument()).isEmpty());
        QVERIFY(JsonPath(QJsonDocument::fromJson("[1]")).isEmpty());
        QVERIFY(!JsonPath(QJsonObject{{QStringLiteral("a"), 1}}).isEmpty());
        QCOMPARE(JsonPath(QJsonObject()).value(QString(), 4), QJsonValue(4));
    }
};

QTEST_APPLESS_MAIN(JsonFileTest)
#include "jsonfiletest.moc"
