#include <core/speech/speechcommon.h>

#include <support/helpers.h>
#include <support/logcapture.h>

#include <QRegExp>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>

namespace {

using Sounds = QHash<QString, QString>;

QString soundsFileName()
{
    return QCoreApplication::applicationDirPath() + u("/../share/tts/common.json");
}

/** The plain way, with QRegExp: the forms one after the other. */
PromptData parsePlainly(const QString& input, PromptContext context, const Sounds& sounds)
{
    // The context 19 alone or all, the mode, the numbers of the captures, the pattern.
    const QStringList forms = u(R"~(19 3 2 1 0 <tts lang="(\S+)"/><offboard>(.*)</offboard>
19 3 3 1 2 <tts lang="(\S+)"/><offboard genre="(.*)">(.*)</offboard>
19 3 1 0 0 <offboard>(.*)</offboard>
19 3 2 0 1 <offboard genre="(.*)">(.*)</offboard>
19 0 1 0 0 <file path="(\S+)"/>
19 0 2 0 0 <file language="(\S+)" path="(\S+)"/>
0 1 1 0 0 <audio path="(\S+)"/>
0 1 2 0 0 <audio language="(\S+)" path="(\S+)"/>
0 1 0 0 0 brand sound
0 0 1 0 0 <file path="(\S+)"/>
0 0 2 0 0 <file language="(\S+)" path="(\S+)"/>
0 2 1 0 0 <text>(.*)</text>
0 2 2 0 0 <text language="(\S+)">(.*)</text>
0 2 1 0 0 <phonetic>(.*)</phonetic>
0 2 2 0 0 <phonetic language="(\S+)">(.*)</phonetic>)~")
                                  .split(QLatin1Char('\n'));
    QRegExp textLanguage(u(R"~(<text language="(\S+)">(.*)</text>)~"));
    const QString key = textLanguage.indexIn(input) < 0 ? input : textLanguage.cap(2);
    if (context == BrandSoundContext) {
        return PromptData(sounds.value(key, key), sounds.contains(key) ? PromptAudio : PromptText);
    }
    for (const QString& form : forms) {
        const auto field = [&form](int number) { return form.section(QLatin1Char(' '), number, number).toInt(); };
        if (form.endsWith(u("brand sound")) && input.contains(u("<")) && sounds.contains(key)) {
            return PromptData(sounds[key], PromptAudio);
        }
        QRegExp pattern(form.section(QLatin1Char(' '), 5));
        if ((field(0) == 0 || field(0) == context) && pattern.indexIn(input) >= 0) {
            PromptData result(pattern.cap(field(2)), PromptMode(field(1)));
            result.language = field(3) == 0 ? InvalidLanguage : convertIsoToLanguageId(pattern.cap(field(3)).toUtf8());
            result.genre = field(4) == 0 ? QString() : pattern.cap(field(4));
            return result;
        }
    }
    return PromptData(input, PromptText);
}

QString printed(const PromptData& prompt)
{
    return u("%1 \"%2\" language %3 genre \"%4\"")
        .arg(prompt.mode)
        .arg(prompt.text, QString::number(prompt.language), prompt.genre);
}

} // namespace

class SpeechCommonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // An empty table of brand sounds for each test.
    void init()
    {
        QFile::remove(soundsFileName());
        LogCapture log;
        QVERIFY(loadBrandSounds(QString()).isEmpty());
    }

    void parse_data()
    {
        QTest::addColumn<QString>("input");
        QTest::addColumn<int>("context");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<bool>("warns");

        // Without a mode, the input is spoken whole, with a warning but in context 10.
        const auto row = [](std::initializer_list<int> contexts, const char* input, int mode = -1,
                             const char* text = "", int language = 255, const char* genre = "") {
            PromptData prompt(u(mode < 0 ? input : text), mode < 0 ? PromptText : PromptMode(mode));
            prompt.language = Language(language);
            prompt.genre = u(genre);
            for (const int context : contexts) {
                QTest::addRow("%d: %s", context, input)
                    << u(input) << context << printed(prompt) << (mode < 0 && context != 10);
            }
        };
        row({0, 7, 10, 19}, "", PromptText, "");
        row({0, 7, 10, 19}, "Plain & \"simple\"", PromptText, "Plain & \"simple\"");
        row({0, 10, 19}, "<text language=\"de_DE\">Grüß Gott</text>", PromptText, "Grüß Gott");
        row({0, 10, 19}, "a < b");
        row({0, 10, 19}, "<TEXT>loud</TEXT>");
        row({0, 10, 19}, "<audio path=\"/a b.mp3\"/>");
        row({0, 10, 19}, "<audio path=\"\"/>");
        row({10}, "<text>t</text>");
        row({0, 19}, "x<audio path=\"/ä.mp3\"/>y", PromptAudio, "/ä.mp3");
        row({0, 19}, "<audio language=\"de_DE\" path=\"/a.mp3\"/>", PromptAudio, "/a.mp3");
        row({0, 19}, "<text>a</text><audio path=\"/a\"/>", PromptAudio, "/a");
        row({0, 19}, "say <text>a\nb</text> or <text>c</text>!", PromptText, "a\nb</text> or <text>c");
        row({0, 19}, "<text></text>", PromptText, "");
        row({0, 19}, "<phonetic>1</phonetic><text>2</text>", PromptText, "2");
        row({0, 19}, "<phonetic language=\"xx\">f@</phonetic>", PromptText, "f@");
        row({0}, "<file language=\"x\" path=\"/no\"/><text>t</text>", PromptFile, "/no");
        row({0, 10}, "<offboard>Hi</offboard>");
        row({19}, "<offboard>Hi</offboard>", PromptOffboard, "Hi");
        row({19}, "<offboard genre=\"news\">Hi</offboard>", PromptOffboard, "Hi", 255, "news");
        row({19}, "<tts lang=\"de_DE\"/><offboard>Hi</offboard>", PromptOffboard, "Hi", 1);
        row({19}, "<tts lang=\"xx\"/><offboard>Hi</offboard>", PromptOffboard, "Hi");
        row({19}, "<tts lang=\"fr_FR\"/><offboard genre=\"a b\">Hi</offboard>", PromptOffboard, "Hi", 6, "a b");
        row({19}, "<tts lang=\"fr_FR\"/> <offboard>Hi</offboard>", PromptOffboard, "Hi");
    }
    void parse()
    {
        QFETCH(QString, input);
        QFETCH(int, context);
        QFETCH(bool, warns);
        LogCapture log;
        const PromptData prompt = PromptData::parse(input, PromptContext(context));
        QTEST(printed(prompt), "expected");
        QCOMPARE(prompt.flag, false);
        const QVector<LogLine> lines = log.takeLines();
        QCOMPARE(lines.size(), warns ? 1 : 0);
        if (warns) {
            QString line;
            QDebug(&line).nospace() << "Unable to parse given string:  " << input;
            QCOMPARE(lines[0].text, line);
            QCOMPARE(lines[0].type, QtWarningMsg);
            QCOMPARE(lines[0].function, u("static PromptData PromptData::parse(const QString&, PromptContext)"));
            QCOMPARE(lines[0].file, u("src/core/speech/speechcommon.cpp"));
        }
    }

    void a4aReadsTheFile_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("text"); // null: the prompt stays the file

        QTest::newRow("markup") << QByteArray("\n<offboard>Grüße\r\nan alle</offboard>") << u("Grüße\nan alle");
        QTest::newRow("cut at NUL") << QByteArray("<offboard>a</offboard>\0</offboard>", 33) << u("a");
        QTest::newRow("behind NUL") << QByteArray("\0<offboard>a</offboard>", 23) << QString();
        QTest::newRow("other markup") << QByteArray("<text>a</text>") << QString();
        QTest::newRow("no file") << QByteArray() << QString();
    }
    void a4aReadsTheFile()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, text);
        const QTemporaryDir folder;
        const QString fileName = folder.filePath(u("prompt.xml"));
        QVERIFY(content.isNull() || writeFile(fileName, content));
        LogCapture log;
        const PromptData prompt = PromptData::parse(u("<file language=\"x\" path=\"%1\"/>").arg(fileName), A4AContext);
        QCOMPARE(prompt.mode, text.isNull() ? PromptFile : PromptOffboard);
        QCOMPARE(prompt.text, text.isNull() ? fileName : text);
        const QString warning =
            u("warning: bool<unnamed>::a4AParse(const QString&, PromptData&) Failed to open \"%1\"");
        QCOMPARE(log.takeTexts(), content.isNull() ? QStringList(warning.arg(fileName)) : QStringList());
    }

    void brandSounds_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("table"); // of brand "BR%1and", sorted

        const auto row = [](const char* json, const char* table) {
            QTest::newRow(json) << QByteArray(json).replace('\'', '"') << u(table);
        };
        row("[{'id': 'a', 'value': '/%1/a', 'x': 1}]", "a.=/br%1and/a a=/br%1and/a");
        row("[{'id': 'a', 'value': '%2/%1/%L1/%%1/%'}]",
            "a.=%2/br%1and/br%1and/%br%1and/% a=%2/br%1and/br%1and/%br%1and/%");
        row("[{'id': 'a', 'value': '5%,%x,%L'}]", "a.=5%,%x,%L a=5%,%x,%L");
        row("[{'id': 'a', 'value': '1'}, {'id': 'a', 'value': '2'}]", "a.=2 a=2");
        row("[{'id': 'a'}, 'a', 5, {'value': 'v'}, {'id': 'b', 'value': 'c'}]", "b.=c b=c");
        row("[{'id': 5, 'value': 'v'}, {'id': 'a', 'value': 5}]", ".=v =v a.= a=");
        row("{'id': 'a', 'value': 'v'}", "");
    }
    void brandSounds()
    {
        QFETCH(QByteArray, json);
        QVERIFY(writeFile(soundsFileName(), json));
        LogCapture log;
        const Sounds sounds = loadBrandSounds(u("BR%1and"));
        QStringList table;
        for (auto sound = sounds.begin(); sound != sounds.end(); ++sound) {
            table += sound.key() + u("=") + sound.value();
            QCOMPARE(soundPath(sound.key()), sound.value());
        }
        table.sort();
        QTEST(table.join(u(" ")), "table");
        QCOMPARE(log.takeLines().size(), 1); // that the file was loaded
    }

    void soundPathLoadsUntilThereIsSomething()
    {
        const QString input = u("<text language=\"x\">ding.</text>");
        LogCapture log;
        QCOMPARE(soundPath(u("ding")) + soundPath(u("ding")), QString());
        QCOMPARE(log.takeLines().size(), 2); // the file was looked for twice
        QVERIFY(writeFile(soundsFileName(), R"([{"id": "ding", "value": "/%1"}])"));
        QCOMPARE(PromptData::parse(input, GeneralContext).mode, PromptText); // parsing never loads
        QCOMPARE(soundPath(u("ding")), u("/tyx"));
        QCOMPARE(soundPath(u("dong")), QString());
        QCOMPARE(log.takeLines().size(), 1);
        for (const PromptContext context : {GeneralContext, BrandSoundContext, A4AContext}) {
            QCOMPARE(printed(PromptData::parse(input, context)), printed(PromptData(u("/tyx"), PromptAudio)));
            // A bare id is a brand sound in its own context only.
            QCOMPARE(
                PromptData::parse(u("ding"), context).mode, context == BrandSoundContext ? PromptAudio : PromptText);
        }
    }

    void mp3Conversion()
    {
        const QTemporaryDir folder;
        const auto isNeeded = [&folder](const char* name, PromptMode mode) {
            return PromptData(folder.filePath(u(name)), mode).isMp3ToWavConversionNeeded();
        };
        QVERIFY(!isNeeded("a.mp3", PromptAudio)); // no such file yet
        for (const char* name : {"a.mp3", "b.x.MP3", "c.wav", "mp3"}) {
            QVERIFY(writeFile(folder.filePath(u(name)), "x"));
            QCOMPARE(isNeeded(name, PromptAudio), u(name).contains(u(".mp3"), Qt::CaseInsensitive));
            QVERIFY(!isNeeded(name, PromptFile));
        }
    }

    void parsesLikeThePatterns()
    {
        QStringList fragments = u("<audio path='|<audio language='|<file path='|<file language='|' path='|'/>|<text>|"
                                  "<text language='|'>|</text>|<phonetic>|<phonetic language='|</phonetic>|<offboard>|"
                                  "<offboard genre='|</offboard>|<tts lang='|'/><offboard>|'/><offboard genre='|de_DE|"
                                  "ding|a b|<|'|/>| |\n|='x")
                                    .replace(QLatin1Char('\''), QLatin1Char('"'))
                                    .split(QLatin1Char('|'));
        for (const int odd : {0x00, 0x1C, 0x85, 0xA0, 0x180E, 0x2028, 0xD83D}) {
            fragments += QChar(odd);
        }
        QVERIFY(writeFile(soundsFileName(), R"([{"id": "ding", "value": "/%1"}])"));
        LogCapture log;
        const Sounds sounds = loadBrandSounds(u("B"));
        QRandomGenerator random(1);
        for (int round = testRounds(); round > 0; --round) {
            const QString input = randomText(random, fragments, 12);
            for (const PromptContext context : {GeneralContext, BrandSoundContext, A4AContext}) {
                const QString expected = printed(parsePlainly(input, context, sounds));
                QVERIFY2(printed(PromptData::parse(input, context)) == expected,
                    qPrintable(u("%1 in context %2, expected %3").arg(input).arg(context).arg(expected)));
            }
            log.takeLines();
        }
    }

    void parsesInSeveralThreads()
    {
        std::atomic<int> right{0};
        runInThreads([&right](int number) {
            const QString text = QString::number(number);
            const QString input = u("<tts lang=\"de_DE\"/><offboard>%1</offboard>").arg(text);
            for (int round = 0; round < 2000; ++round) {
                right += PromptData::parse(input, A4AContext).text == text ? 1 : 0;
            }
        });
        QCOMPARE(right.load(), 8 * 2000);
    }
};

QTEST_GUILESS_MAIN(SpeechCommonTest)
#include "speechcommontest.moc"
