#include <core/applicationsettings.h>

#include <support/childprocess.h>
#include <support/helpers.h>
#include <support/logcapture.h>

class ApplicationSettingsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // One test, because the order of its steps matters: loaded settings stay until the process ends.
    void settingsAreLoadedOnce() {
        QCoreApplication::setApplicationName(u("settings of a test"));
        const QString fileName = QCoreApplication::applicationDirPath() + u("/settings of a test.json");
        QFile::remove(fileName);
        const auto rate = [] { return ApplicationSettings::value(u("tts/rate"), 7).toInt(); };
        const auto line = [&fileName](const char* text) { return u(text).arg(u("\"") + fileName + u("\"")); };
        const QString loaded = line("debug: static QJsonDocument JsonFile::loadDocument(const QString&) Loaded: %1");
        const struct {
            QByteArray content;
            QStringList log;
        } retried[] = {
            {QByteArray(),
                {line("warning: static QJsonDocument JsonFile::loadDocument(const QString&) %1 does not exist.")}},
            {"[1]", {loaded, line("debug: bool<unnamed>::loadSettings() Invalid configuration file: %1")}},
            {"[]", {loaded, line("debug: bool<unnamed>::loadSettings() Invalid configuration file: %1")}},
            {"{}", {loaded, line("debug: bool<unnamed>::loadSettings() Loaded application config: %1 \"{\n}\n\"")}},
        };
        LogCapture log;
        for (const auto& row : retried) {
            QVERIFY(row.content.isNull() || writeFile(fileName, row.content));
            QCOMPARE(rate(), 7);
            QCOMPARE(rate(), 7);
            QCOMPARE(log.takeTexts(), row.log + row.log);
        }
        QVERIFY(writeFile(fileName, "{\"tts\": {\"rate\": 3, \"voice\": \"J\\\"ö\", \"pitch\": null}}"));
        QCOMPARE(rate(), 3);
        QCOMPARE(log.takeLines().last(),
            line("debug: bool<unnamed>::loadSettings() Loaded application config: %1 \"{\n    \"tts\": {\n        "
                 "\"pitch\": null,\n        \"rate\": 3,\n        \"voice\": \"J\\\"ö\"\n    }\n}\n\" "
                 "(src/core/applicationsettings.cpp, bool<unnamed>::loadSettings(), default)"));

        QVERIFY(writeFile(fileName, "{\"tts\": {\"rate\": 4}}"));
        QCOMPARE(rate(), 3);
        QCOMPARE(ApplicationSettings::value(u("tts/volume"), 1), QJsonValue(1));
        QCOMPARE(ApplicationSettings::value(u("tts/pitch"), 1), QJsonValue());
        QVERIFY(log.takeLines().isEmpty());
    }

    void defaultAfterSettingsAreDestroyed() {
        const ChildResult result = runChild({u("late")});
        QVERIFY(!result.isCrash);
        QCOMPARE(result.output, QByteArray("5"));
    }
};

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    if (argc == 2 && qstrcmp(argv[1], "late") == 0) {
        std::atexit([] { std::printf("%d", ApplicationSettings::value(u("a/b"), 5).toInt()); });
        return ApplicationSettings::value(u("a/b"), 0).toInt();
    }
    ApplicationSettingsTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "applicationsettingstest.moc"
