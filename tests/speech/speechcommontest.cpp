#include <core/speech/speechcommon_p.h>

#include <support/helpers.h>
#include <support/logcapture.h>
#include <support/plainways.h>

#include <QRegExp>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>

namespace {

QString soundsFileName() { return QCoreApplication::applicationDirPath() + u("/../share/tts/common.json"); }

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

        for (const QStringList& lines : readCases("prompts.txt")) {
            const QString input = lines[0].section(QLatin1Char(' '), 1);
            const QString expected = lines.size() > 1 ? lines[1].mid(4) : u("2 255 - ") + input;
            for (const QString& context : lines[0].section(QLatin1Char(' '), 0, 0).split(QLatin1Char(','))) {
                QTest::addRow("%s: %s", qUtf8Printable(context), qUtf8Printable(input))
                    << input << context.toInt() << expected << (lines.size() == 1 && context != u("10"));
            }
        }
        QTest::newRow("empty") << QString() << 0 << u("2 255 - ") << false;
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
        QString line;
        QDebug(&line).nospace()
            << "warning: Unable to parse given string:  " << input
            << " (src/core/speech/speechcommon.cpp, static PromptData PromptData::parse(const QString&, "
               "PromptContext), default)";
        QCOMPARE(log.takeLines(), warns ? QStringList(line) : QStringList());
    }

    void everyFormHasACaseOfItsOwn()
    {
        const QString cases = u(readData("prompts.txt"));
        for (const PromptForm& form : promptForms) {
            const QString pattern = u(form.pattern.source);
            const QRegularExpression line(
                u("^[0-9,]+ [^<]*%1[^<]*$").arg(pattern), QRegularExpression::MultilineOption);
            QVERIFY2(cases.contains(line), qPrintable(u("tests/data/prompts.txt lacks ") + pattern));
        }
    }

    void a4aReadsTheFile()
    {
        const struct {
            QByteArray content;
            const char* text; /* null: the prompt stays the file */
        } rows[] = {
            {"\n<offboard>Grüße\r\nan alle</offboard>", "Grüße\nan alle"},
            {QByteArray("<offboard>a</offboard>\0</offboard>", 33), "a"},
            {QByteArray("\0<offboard>a</offboard>", 23), nullptr},
            {"<text>a</text>", nullptr},
            {QByteArray(), nullptr},
        };
        for (const auto& row : rows) {
            const QTemporaryDir folder;
            const QString fileName = folder.filePath(u("prompt.xml"));
            QVERIFY(row.content.isNull() || writeFile(fileName, row.content));
            for (const char* form :
                {"<file language=\"x\" path=\"%1\"/>", "<file language=\"x\" path=\"/\"/><file path=\"%1\"/>"}) {
                LogCapture log;
                const PromptData prompt = PromptData::parse(u(form).arg(fileName), A4AContext);
                QCOMPARE(printed(prompt), row.text != nullptr ? u("3 255 - ") + u(row.text) : u("0 255 - ") + fileName);
                const QString warning =
                    u("warning: bool<unnamed>::a4AParse(const QString&, PromptData&) Failed to open \"%1\"");
                QCOMPARE(log.takeTexts(), row.content.isNull() ? QStringList(warning.arg(fileName)) : QStringList());
            }
        }
    }

    void brandSounds()
    {
        // The file, and the table of brand "BR%1and", sorted.
        const struct {
            const char *json, *table;
        } rows[] = {
            {"[{'id': 'a', 'value': '/%1/a', 'x': 1}]", "a.=/br%1and/a a=/br%1and/a"},
            {"[{'id': 'a', 'value': '%2/%1/%L1/%%1/%'}]",
                "a.=%2/br%1and/br%1and/%br%1and/% a=%2/br%1and/br%1and/%br%1and/%"},
            {"[{'id': 'a', 'value': '5%,%x,%L'}]", "a.=5%,%x,%L a=5%,%x,%L"},
            {"[{'id': 'a', 'value': '1'}, {'id': 'a', 'value': '2'}]", "a.=2 a=2"},
            {"[{'id': 'a'}, 'a', 5, {'value': 'v'}, {'id': 'b', 'value': 'c%'}]", "b.=c% b=c%"},
            {"[{'id': 5, 'value': 'v'}, {'id': 'a', 'value': 5}]", ".=v =v a.= a="},
            {"{'id': 'a', 'value': 'v'}", ""},
        };
        LogCapture log;
        for (const auto& row : rows) {
            QVERIFY(writeFile(soundsFileName(), QByteArray(row.json).replace('\'', '"')));
            const Sounds sounds = loadBrandSounds(u("BR%1and"));
            QVERIFY(loadBrandSounds(u("x"), u("/none.json")).isEmpty());
            log.takeLines();
            QCOMPARE(loadBrandSounds(u("BR%1and"), soundsFileName()), sounds);
            QStringList table;
            for (auto sound = sounds.begin(); sound != sounds.end(); ++sound) {
                table += sound.key() + u("=") + sound.value();
                QCOMPARE(soundPath(sound.key()), sound.value());
            }
            table.sort();
            QCOMPARE(table.join(u(" ")), u(row.table));
            QCOMPARE(log.takeLines().size(), 1); // that the file was loaded
        }
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
            QCOMPARE(printed(PromptData::parse(input, context)), u("1 255 - /tyx"));
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
        QStringList fragments = u("de_DE|ding|a b|<|>|\"|/>| |\n|=\"x").split(QLatin1Char('|'));
        for (const PromptForm& form : promptForms) {
            fragments += u(form.pattern.source).split(QRegExp(u("\\([^)]*\\)")));
        }
        fragments.removeDuplicates();
        for (const int odd : {0x00, 0x1C, 0x85, 0xA0, 0x180E, 0x2028, 0xD83D}) { fragments += QChar(odd); }
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
        runInThreads(8, [&right](int number) {
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
