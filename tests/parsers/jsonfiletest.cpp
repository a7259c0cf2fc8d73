#include <core/parsers/jsonfile.h>

#include <support/helpers.h>
#include <support/logcapture.h>

const struct {
    const char *name, *path;
    QJsonValue value = u("default");
} values[] = {{"nested", "a/b", 5}, {"null is found", "a/n", QJsonValue()}, {"array", "a/arr", QJsonArray{1}},
    {"object", "é", QJsonObject{{QString(), 3}}}, {"empty last key", "é/", 3},
    {"empty path", "", QJsonObject{{u("a"), 7}}}, {"leading slash", "/a", 7}, {"no index into an array", "a/arr/0"},
    {"no such key", "a/x"}, {"no such first key", "x"}, {"key below a number", "a/b/c"}, {"empty key between", "a//b"},
    {"empty key below a number", "a/b/"}, {"another case", "A/b"}, {"a key with a slash", "k/l"}};

class JsonFileTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void loadDocument_data() {
        QTest::addColumn<QByteArray>("content"); // null: no file
        QTest::addColumn<QString>("line");       // %1 is the signature, %2 the file

        QTest::newRow("object") << QByteArray("{\"a\":1}") << "debug: %1 Loaded: %2";
        QTest::newRow("array") << QByteArray("[1,2]") << "debug: %1 Loaded: %2";
        QTest::newRow("no file") << QByteArray() << "warning: %1 %2 does not exist.";
        QTest::newRow("a folder") << QByteArray() << "warning: %1 Could not open for reading: %2";
        for (const char* content : {"", "[5", "[] x"}) {
            QJsonParseError error;
            QJsonDocument::fromJson(content, &error);
            QTest::addRow("broken: %s", content)
                << QByteArray(content)
                << u("critical: %1 Parsing %2 failed due to \"%3\" at %4")
                       .arg(u("%1"), u("%2"), error.errorString(), QString::number(error.offset));
        }
    }
    void loadDocument() {
        QFETCH(QByteArray, content);
        QFETCH(QString, line);
        const QTemporaryDir folder;
        const QString fileName = folder.filePath(u("Größe.json"));
        QVERIFY(content.isNull() || writeFile(fileName, content));
        QVERIFY(u(QTest::currentDataTag()) != u("a folder") || QDir().mkdir(fileName));
        LogCapture log;
        QCOMPARE(JsonFile::loadDocument(fileName).isNull(), !line.startsWith(u("debug")));
        const QString signature = u("static QJsonDocument JsonFile::loadDocument(const QString&)");
        QCOMPARE(log.takeLines(), QStringList(line.arg(signature, u("\"%1\"").arg(fileName))
                                              + u(" (src/core/parsers/jsonfile.cpp, %1, default)").arg(signature)));
    }

    void value_data() { addRows(values); }
    void value() {
        const auto& row = currentRow(values);
        const JsonPath root(QJsonDocument::fromJson(R"({"a": {"b": 5, "n": null, "arr": [1]},
            "é": {"": 3}, "": {"a": 7}, "k/l": 1})"));
        QCOMPARE(root.value(u(row.path), u("default")), row.value);
    }

    void rootIsAlwaysAnObject() {
        QVERIFY(JsonPath(QJsonDocument()).isEmpty());
        QVERIFY(JsonPath(QJsonDocument::fromJson("[1]")).isEmpty());
        QVERIFY(!JsonPath(QJsonObject{{u("a"), 1}}).isEmpty());
    }
};

QTEST_APPLESS_MAIN(JsonFileTest)
#include "jsonfiletest.moc"
