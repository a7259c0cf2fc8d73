#include <core/speech/speechcommon.h>

#include <support/logcapture.h>
#include <support/rounds.h>

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QRegExp>
#include <QTemporaryDir>
#include <QTest>

#include <thread>

namespace {

const QString parseSignature =
    QStringLiteral("static PromptData PromptData::parse(const QString&, PromptContext)");
const QString a4aSignature = QStringLiteral("bool<unnamed>::a4AParse(const QString&, PromptData&)");

QString u(const char* text)
{
    return QString::fromUtf8(text);
}

void write(const QString& fileName, const QByteArray& content)
{
    QVERIFY(QDir().mkpath(QFileInfo(fileName).path()));
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

QString soundsFileName()
{
    return QCoreApplication::applicationDirPath() + u("/../share/tts/common.json");
}

/** The plain way: the rules one after the other, with QRegExp. */
struct PlainParser
{
    struct Form
    {
        const char* pattern;
        PromptMode mode;
        int text;
        int language;
        int genre;
    };

    static bool tryForm(const Form& form, const QString& input, PromptData& result)
    {
        QRegExp pattern(u(form.pattern));
        if (pattern.indexIn(input) < 0) {
            return false;
        }
        result = PromptData(pattern.cap(form.text), form.mode);
        if (form.language > 0) {
            result.language = convertIsoToLanguageId(pattern.cap(form.language).toUtf8());
        }
        if (form.genre > 0) {
            result.genre = pattern.cap(form.genre);
        }
        return true;
    }

    static PromptData parse(
        const QString& input, PromptContext context, const QHash<QString, QString>& sounds)
    {
        const Form textLanguage = {R"~(<text language="(\S+)">(.*)</text>)~", PromptText, 2, 0, 0};
        PromptData result(input, PromptText);
        PromptData key = result;
        tryForm(textLanguage, input, key);
        if (context == BrandSoundContext) {
            return sounds.contains(key.text) ? PromptData(sounds[key.text], PromptAudio) : key;
        }
        if (context == A4AContext) {
            for (const Form& form :
                {Form{R"~(<tts lang="(\S+)"/><offboard>(.*)</offboard>)~", PromptOffboard, 2, 1, 0},
                    Form{R"~(<tts lang="(\S+)"/><offboard genre="(.*)">(.*)</offboard>)~",
                        PromptOffboard, 3, 1, 2},
                    Form{R"~(<offboard>(.*)</offboard>)~", PromptOffboard, 1, 0, 0},
                    Form{R"~(<offboard genre="(.*)">(.*)</offboard>)~", PromptOffboard, 2, 0, 1},
                    Form{R"~(<file path="(\S+)"/>)~", PromptFile, 1, 0, 0},
                    Form{R"~(<file language="(\S+)" path="(\S+)"/>)~", PromptFile, 2, 0, 0}}) {
                if (tryForm(form, input, result)) {
                    return result;
                }
            }
        }
        for (const Form& form : {Form{R"~(<audio path="(\S+)"/>)~", PromptAudio, 1, 0, 0},
                 Form{R"~(<audio language="(\S+)" path="(\S+)"/>)~", PromptAudio, 2, 0, 0}}) {
            if (tryForm(form, input, result)) {
                return result;
            }
        }
        if (input.contains(QLatin1Char('<')) && sounds.contains(key.text)) {
            return PromptData(sounds[key.text], PromptAudio);
        }
        for (const Form& form : {Form{R"~(<file path="(\S+)"/>)~", PromptFile, 1, 0, 0},
                 Form{R"~(<file language="(\S+)" path="(\S+)"/>)~", PromptFile, 2, 0, 0},
                 Form{R"~(<text>(.*)</text>)~", PromptText, 1, 0, 0}, textLanguage,
                 Form{R"~(<phonetic>(.*)</phonetic>)~", PromptText, 1, 0, 0},
                 Form{R"~(<phonetic language="(\S+)">(.*)</phonetic>)~", PromptText, 2, 0, 0}}) {
            if (tryForm(form, input, result)) {
                return result;
            }
        }
        return result;
    }
};

} // namespace

class SpeechCommonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        // An empty table of brand sounds for each test.
        QFile::remove(soundsFileName());
        LogCapture log;
        QVERIFY(loadBrandSounds(QString()).isEmpty());
    }
    void initTestCase()
    {
        cleanup();
    }

    void parse_data()
    {
        QTest::addColumn<QString>("input");
        QTest::addColumn<int>("context");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("language");
        QTest::addColumn<QString>("genre");
        QTest::addColumn<bool>("warns");

        const auto row = [](const char* input, int context, PromptMode mode, const char* text,
                             bool warns = false, int language = 255, const char* genre = "") {
            QTest::addRow("%d: %s", context, input)
                << u(input) << context << int(mode) << u(text) << language << u(genre) << warns;
        };
        for (const int context : {0, 7, 10, 19}) {
            row("", context, PromptText, "");
            row("Plain & simple \"text\"", context, PromptText, "Plain & simple \"text\"");
            row("<text language=\"de_DE\">Grüß Gott</text>", context, PromptText, "Grüß Gott");
        }
        for (const int context : {0, 19}) {
            row("a < b", context, PromptText, "a < b", true);
            row("<TEXT>loud</TEXT>", context, PromptText, "<TEXT>loud</TEXT>", true);
            row("<audio path=\"/a b.mp3\"/>", context, PromptText, "<audio path=\"/a b.mp3\"/>",
                true);
            row("<audio path=\"\"/>", context, PromptText, "<audio path=\"\"/>", true);
            row("x<audio path=\"/ä.mp3\"/>y", context, PromptAudio, "/ä.mp3");
            row("<audio language=\"de_DE\" path=\"/a.mp3\"/>", context, PromptAudio, "/a.mp3");
            row("<text>a</text><audio path=\"/a\"/>", context, PromptAudio, "/a");
            row("say <text>a\nb</text> and <text>c</text>!", context, PromptText,
                "a\nb</text> and <text>c");
            row("<text></text>", context, PromptText, "");
            row("<phonetic>1</phonetic><text>2</text>", context, PromptText, "2");
            row("<phonetic>f@</phonetic>", context, PromptText, "f@");
            row("<phonetic language=\"xx\">f@</phonetic>", context, PromptText, "f@");
        }
        row("<file path=\"/no/such\"/>", 0, PromptFile, "/no/such");
        row("<file language=\"de_DE\" path=\"/no/such\"/><text>t</text>", 0, PromptFile,
            "/no/such");
        row("<audio path=\"/a\"/>", 10, PromptText, "<audio path=\"/a\"/>");
        row("<text>t</text>", 10, PromptText, "<text>t</text>");

        const char* const offboard = "<offboard>Hi</offboard>";
        row(offboard, 0, PromptText, offboard, true);
        row(offboard, 19, PromptOffboard, "Hi");
        row("<offboard genre=\"news\">Hi</offboard>", 19, PromptOffboard, "Hi", false, 255, "news");
        row("<tts lang=\"de_DE\"/><offboard>Hi</offboard>", 19, PromptOffboard, "Hi", false, 1);
        row("<tts lang=\"xx\"/><offboard>Hi</offboard>", 19, PromptOffboard, "Hi");
        row("<tts lang=\"fr_FR\"/><offboard genre=\"a b\">Hi</offboard>", 19, PromptOffboard, "Hi",
            false, 6, "a b");
        row("<tts lang=\"fr_FR\"/> <offboard>Hi</offboard>", 19, PromptOffboard, "Hi");
    }
    void parse()
    {
        QFETCH(QString, input);
        QFETCH(int, context);
        QFETCH(bool, warns);
        LogCapture log;
        const PromptData prompt = PromptData::parse(input, PromptContext(context));
        QTEST(int(prompt.mode), "mode");
        QTEST(prompt.text, "text");
        QTEST(int(prompt.language), "language");
        QTEST(prompt.genre, "genre");
        QCOMPARE(prompt.flag, false);
        QStringList expected;
        if (warns) {
            QString line;
            QDebug(&line).nospace() << "warning: Unable to parse given string:  " << input;
            expected += line;
        }
        QCOMPARE(log.takeTexts(), expected);
    }

    void warningNamesItsPlace()
    {
        LogCapture log;
        PromptData::parse(u("<"), GeneralContext);
        const QVector<LogLine> lines = log.takeLines();
        QCOMPARE(lines.size(), 1);
        QCOMPARE(lines[0].function, parseSignature);
        QCOMPARE(lines[0].file, u("src/core/speech/speechcommon.cpp"));
        QCOMPARE(lines[0].category, u("default"));
    }

    void a4aReadsTheFile_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("text"); // of an off-board prompt
        QTest::addColumn<bool>("warns");

        QTest::newRow("markup") << QByteArray("\n<offboard>Grüße\r\nan alle</offboard>")
                                << int(PromptOffboard) << u("Grüße\nan alle") << false;
        QTest::newRow("cut at NUL") << QByteArray("<offboard>a</offboard>\0</offboard>", 33)
                                    << int(PromptOffboard) << u("a") << false;
        QTest::newRow("markup behind NUL")
            << QByteArray("\0<offboard>a</offboard>", 23) << int(PromptFile) << QString() << false;
        QTest::newRow("other markup")
            << QByteArray("<text>a</text>") << int(PromptFile) << QString() << false;
        QTest::newRow("no file") << QByteArray() << int(PromptFile) << QString() << true;
    }
    void a4aReadsTheFile()
    {
        QFETCH(QByteArray, content);
        QFETCH(int, mode);
        QFETCH(QString, text);
        QFETCH(bool, warns);
        const QTemporaryDir folder;
        const QString fileName = folder.filePath(u("prompt.xml"));
        if (!content.isNull()) {
            write(fileName, content);
        }
        LogCapture log;
        const PromptData prompt =
            PromptData::parse(u("<file language=\"x\" path=\"%1\"/>").arg(fileName), A4AContext);
        QCOMPARE(int(prompt.mode), mode);
        QCOMPARE(prompt.text, mode == PromptFile ? fileName : text);
        const QVector<LogLine> lines = log.takeLines();
        QCOMPARE(lines.size(), warns ? 1 : 0);
        if (warns) {
            QCOMPARE(lines[0].type, QtWarningMsg);
            QCOMPARE(lines[0].text, a4aSignature + u(" Failed to open \"%1\"").arg(fileName));
            QCOMPARE(lines[0].function, a4aSignature);
        }
    }

    void brandSounds_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("id");
        QTest::addColumn<QString>("path");

        const struct
        {
            const char *json, *id, *path;
        } rows[] = {
            {R"([{"id": "ding", "value": "/s/%1/d.mp3", "x": 1}])", "ding", "/s/br%1and/d.mp3"},
            {R"([{"id": "ding", "value": "/s/%1/d.mp3"}])", "ding.", "/s/br%1and/d.mp3"},
            {R"([{"id": "ding", "value": "/s/%1/d.mp3"}])", "Ding", ""},
            {R"([{"id": "d", "value": "%2/%1/%00"}])", "d", "%2/%1/br%1and"},
            {R"([{"id": "d", "value": "%2/%1/%L1/%%1/%"}])", "d", "%2/br%1and/br%1and/%br%1and/%"},
            {R"([{"id": "d", "value": "no marker: 5%, %x, %L"}])", "d", "no marker: 5%, %x, %L"},
            {R"([{"id": "d", "value": "1"}, {"id": "d", "value": "2"}])", "d.", "2"},
            {R"([{"id": "d"}, "d", 5, {"value": "v"}, {"id": "e", "value": "last"}])", "d", ""},
            {R"([{"id": "d"}, "d", 5, {"value": "v"}, {"id": "e", "value": "last"}])", "e", "last"},
            {R"([{"id": 5, "value": "v"}])", "", "v"},
            {R"([{"id": "d", "value": 5}])", "d", ""},
            {R"({"id": "d", "value": "v"})", "d", ""},
        };
        for (const auto& row : rows) {
            QTest::addRow("%s in %s", row.id, row.json)
                << QByteArray(row.json) << u(row.id) << u(row.path);
        }
    }
    void brandSounds()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, id);
        write(soundsFileName(), json);
        LogCapture log;
        const QHash<QString, QString> sounds = loadBrandSounds(u("BR%1and"));
        QTEST(sounds.value(id), "path");
        if (!sounds.isEmpty()) {
            QCOMPARE(soundPath(id), sounds.value(id));
        }
        QVERIFY(log.takeTexts().first().startsWith(u("debug: static QJsonDocument")));
    }

    void soundPathLoadsUntilThereIsSomething()
    {
        LogCapture log;
        QCOMPARE(soundPath(u("ding")), QString());
        QCOMPARE(soundPath(u("ding")), QString());
        QCOMPARE(log.takeLines().size(), 2); // the file was looked for twice
        write(soundsFileName(), R"([{"id": "ding", "value": "/%1"}])");
        QCOMPARE(PromptData::parse(u("<text language=\"x\">ding</text>"), GeneralContext).mode,
            PromptText);
        QCOMPARE(log.takeTexts(), QStringList());
        QCOMPARE(soundPath(u("ding")), u("/tyx"));
        QCOMPARE(soundPath(u("dong")), QString());
        QCOMPARE(log.takeTexts(),
            QStringList(u(
                "debug: static QJsonDocument JsonFile::loadDocument(const QString&) Loaded: \"%1\"")
                            .arg(soundsFileName())));
        for (const PromptContext context : {GeneralContext, BrandSoundContext, A4AContext}) {
            const PromptData prompt =
                PromptData::parse(u("<text language=\"x\">ding.</text>"), context);
            QCOMPARE(prompt.mode, PromptAudio);
            QCOMPARE(prompt.text, u("/tyx"));
            // A bare id is a brand sound in its own context only.
            QCOMPARE(PromptData::parse(u("ding"), context).mode,
                context == BrandSoundContext ? PromptAudio : PromptText);
        }
        write(soundsFileName(), "[");
        QVERIFY(loadBrandSounds(u("any")).isEmpty());
    }

    void mp3Conversion()
    {
        const QTemporaryDir folder;
        for (const char* name : {"a.mp3", "b.x.MP3", "c.wav", "mp3"}) {
            write(folder.filePath(u(name)), "x");
        }
        const auto isNeeded = [&folder](const char* name, PromptMode mode) {
            return PromptData(folder.filePath(u(name)), mode).isMp3ToWavConversionNeeded();
        };
        QVERIFY(isNeeded("a.mp3", PromptAudio));
        QVERIFY(isNeeded("b.x.MP3", PromptAudio));
        QVERIFY(!isNeeded("a.mp3", PromptFile));
        QVERIFY(!isNeeded("c.wav", PromptAudio));
        QVERIFY(!isNeeded("mp3", PromptAudio));
        QVERIFY(!isNeeded("none.mp3", PromptAudio));
    }

    void parsesLikeThePatterns()
    {
        const QStringList fragments = {u("<audio path=\""), u("<audio language=\""),
            u("<file path=\""), u("<file language=\""), u("\" path=\""), u("\"/>"), u("<text>"),
            u("<text language=\""), u("\">"), u("</text>"), u("<phonetic>"),
            u("<phonetic language=\""), u("</phonetic>"), u("<offboard>"), u("<offboard genre=\""),
            u("</offboard>"), u("<tts lang=\""), u("\"/><offboard>"), u("\"/><offboard genre=\""),
            u("de_DE"), u("ding"), u("a b"), u("<"), u("\""), u("/>"), u(" "), u("\n"),
            QString(QChar(0x00A0)), QString(QChar(0x0085)), QString(QChar(0x180E)),
            QString(QChar(0x001C)), QString(QChar(0xD83D)), u("=\"x")};
        write(soundsFileName(), R"([{"id": "ding", "value": "/%1"}])");
        LogCapture log;
        const QHash<QString, QString> sounds = loadBrandSounds(u("B"));
        log.takeLines();
        QRandomGenerator random(1);
        int matches = 0;
        for (int round = testRounds(20'000); round > 0; --round) {
            QString input;
            // Few kinds of fragments in one text make forms that nearly fit likely.
            const int kinds = random.bounded(1, fragments.size());
            const int offset = random.bounded(fragments.size());
            for (int count = random.bounded(12); count > 0; --count) {
                input += fragments[(offset + random.bounded(kinds)) % fragments.size()];
            }
            for (const PromptContext context : {GeneralContext, BrandSoundContext, A4AContext}) {
                const PromptData plain = PlainParser::parse(input, context, sounds);
                const PromptData prompt = PromptData::parse(input, context);
                if (prompt.mode != plain.mode || prompt.text != plain.text
                    || prompt.language != plain.language || prompt.genre != plain.genre) {
                    qCritical() << input << context << prompt.mode << prompt.text << plain.mode
                                << plain.text;
                    QCOMPARE(prompt.text, plain.text);
                    QFAIL("mode, language or genre differs");
                }
                matches += prompt.text != input ? 1 : 0;
            }
            log.takeLines();
        }
        QVERIFY(matches > 0);
    }

    void parsesInSeveralThreads()
    {
        LogCapture log;
        std::vector<std::thread> threads;
        std::atomic<int> right{0};
        for (int i = 0; i < 8; ++i) {
            threads.emplace_back([i, &right] {
                const QString text = QString::number(i);
                const QString input = u("<tts lang=\"de_DE\"/><offboard>%1</offboard>").arg(text);
                for (int round = 0; round < 2000; ++round) {
                    right += PromptData::parse(input, A4AContext).text == text ? 1 : 0;
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        QCOMPARE(right.load(), 8 * 2000);
    }
};

QTEST_GUILESS_MAIN(SpeechCommonTest)
#include "speechcommontest.moc"
