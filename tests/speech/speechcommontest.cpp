#include <core/speech/speechcommon_p.h>

#include <support/described.h>
#include <support/logcapture.h>

#include <optional>

namespace {

const struct {
    const char *name, *contexts, *input;
    PromptMode mode = PromptText;
    const char* text = nullptr; // null: the input is spoken whole, with a warning except in context 10
    Language language = InvalidLanguage;
    const char* genre = "";
} prompts[] = {
    {"plain text", "0,7,10,19", "Plain & \"simple\"", PromptText, "Plain & \"simple\""},
    {"no text", "0,10,19", "", PromptText, ""},
    {"text with a language", "0,10,19", R"(<text language="de_DE">Grüß Gott</text>)", PromptText, "Grüß Gott"},
    {"no markup", "0,10,19", "a < b"},
    {"markup in upper case", "0,10,19", "<TEXT>loud</TEXT>"},
    {"text around audio", "0,19", R"(x<audio path="/ä.mp3"/>y)", PromptAudio, "/ä.mp3"},
    {"audio with a language", "0,19", R"(<audio language="de_DE" path="/a.mp3"/>)", PromptAudio, "/a.mp3"},
    {"several texts", "0,19", "say <text>a</text> or <text>b</text>!", PromptText, "a</text> or <text>b"},
    {"quotes after the text", "0,19", R"(<text language="x">a</text>"b">)", PromptText, "a"},
    {"phonetic text", "0,19", "<phonetic>f@</phonetic>", PromptText, "f@"},
    {"phonetic with a language", "0,19", R"(<phonetic language="xx">f@</phonetic>)", PromptText, "f@"},
    {"file", "0", R"(<file path="/a"/>)", PromptFile, "/a"},
    {"file with a language", "0", R"(<file language="x" path="/a"/>)", PromptFile, "/a"},

    // If several forms match, the first one tried wins, wherever it is in the prompt.
    {"audio before text", "0,19", R"(<text>a</text><audio path="/a"/>)", PromptAudio, "/a"},
    {"text before phonetic", "0,19", R"(<phonetic>1</phonetic><text language="x">2</text>)", PromptText, "2"},
    {"file before text", "0", R"(<file language="x" path="/no"/><text>t</text>)", PromptFile, "/no"},
    {"plain audio first", "0,19", R"(<audio language="x" path="/1"/><audio path="/2"/>)", PromptAudio, "/2"},
    {"plain file first", "0", R"(<file language="x" path="/1"/><file path="/2"/>)", PromptFile, "/2"},
    {"plain text first", "0,19", R"(<text language="x">1</text><text>2</text>)", PromptText, "2"},
    {"plain phonetic first", "0,19", R"(<phonetic language="x">1</phonetic><phonetic>2</phonetic>)", PromptText, "2"},
    {"plain off-board first", "19", R"(<offboard genre="g">1</offboard><offboard>2</offboard>)", PromptOffboard, "2"},
    {"genre with a language first", "19",
        R"(<offboard>1</offboard><tts lang="de_DE"/><offboard genre="g">2</offboard>)", PromptOffboard, "2", German,
        "g"},
    {"no genre, with a language first", "19",
        R"(<tts lang="de_DE"/><offboard genre="g">1</offboard><tts lang="fr_FR"/><offboard>2</offboard>)",
        PromptOffboard, "2", French},

    // Off-board markup counts only in context 19; only a tts tag right before it sets the language.
    {"no off-board context", "0,10", "<offboard>Hi</offboard>"},
    {"off-board", "19", "<offboard>Hi</offboard>", PromptOffboard, "Hi"},
    {"genre", "19", R"(<offboard genre="it_IT">Hi</offboard>)", PromptOffboard, "Hi", InvalidLanguage, "it_IT"},
    {"tts tag", "19", R"(<tts lang="de_DE"/><offboard>Hi</offboard>)", PromptOffboard, "Hi", German},
    {"unknown language", "19", R"(<tts lang="xx"/><offboard>Hi</offboard>)", PromptOffboard, "Hi"},
    {"tts tag and genre", "19", R"(<tts lang="fr_FR"/><offboard genre="a_b">Hi</offboard>)", PromptOffboard, "Hi",
        French, "a_b"},
    {"blank after the tts tag", "19", R"(<tts lang="fr_FR"/> <offboard>Hi</offboard>)", PromptOffboard, "Hi"},
};

/** Files of off-board markup. */
const struct {
    const char* name;
    QByteArray content;
    const char* text = nullptr; // null: the prompt stays the file
} files[] = {{"line ends", "\n<offboard>Grüße\r\nan alle</offboard>", "Grüße\nan alle"},
    {"up to a NUL", QByteArray("<offboard>a</offboard>\0</offboard>", 33), "a"},
    {"after a NUL", QByteArray("\0<offboard>a</offboard>", 23)}, {"other markup", "<text>a</text>"},
    {"no file", QByteArray()}};

/** Files of brand sounds, with ' for ". */
const struct {
    const char *name, *json;
    const char* table; // for the brand "BR%1and", sorted
} soundTables[] = {{"other members", "[{'id': 'a', 'value': '/%1/a', 'x': 1}]", "a.=/br%1and/a a=/br%1and/a"},
    {"lowest place marker", "[{'id': 'a', 'value': '%2/%1/%L1/%%1/%'}]",
        "a.=%2/br%1and/br%1and/%br%1and/% a=%2/br%1and/br%1and/%br%1and/%"},
    {"place marker of the locale", "[{'id': 'a', 'value': '%L1'}]", "a.=br%1and a=br%1and"},
    {"place marker 0", "[{'id': 'a', 'value': '%0'}]", "a.=br%1and a=br%1and"},
    {"no place marker", "[{'id': 'a', 'value': '5%,%x,%L'}]", "a.=5%,%x,%L a=5%,%x,%L"},
    {"last of the same id", "[{'id': 'a', 'value': '1'}, {'id': 'a', 'value': '2'}]", "a.=2 a=2"},
    {"incomplete sounds", "[{'id': 'a'}, 'a', 5, {'value': 'v'}, {'id': 'b', 'value': 'c%'}]", "b.=c% b=c%"},
    {"other types", "[{'id': 5, 'value': 'v'}, {'id': 'a', 'value': 5}]", ".=v =v a.= a="},
    {"no array", "{'id': 'a', 'value': 'v'}", ""}};

QString soundsFileName() { return QCoreApplication::applicationDirPath() + u("/../share/tts/common.json"); }

} // namespace

class SpeechCommonTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Each test starts with an empty table of brand sounds.
    void init() {
        QFile::remove(soundsFileName());
        log.emplace();
        QVERIFY(loadBrandSounds(QString()).isEmpty());
        log->takeTexts();
    }
    void cleanup() { log.reset(); }

    void defaults() { QCOMPARE(described(PromptData()) + QString::number(PromptData().flag), u("2 255 - 0")); }

    void parse_data() { addRows(prompts); }
    void parse() {
        const auto& row = currentRow(prompts);
        PromptData expected(u(row.text != nullptr ? row.text : row.input), row.mode);
        expected.language = row.language;
        expected.genre = u(row.genre);
        for (const QString& context : u(row.contexts).split(QLatin1Char(','))) {
            const PromptData prompt = PromptData::parse(u(row.input), PromptContext(context.toInt()));
            QCOMPARE(context + u(": ") + described(prompt), context + u(": ") + described(expected));
            QCOMPARE(prompt.flag, false);
            QString line;
            QDebug(&line).nospace()
                << "warning: Unable to parse given string:  " << u(row.input)
                << " (src/core/speech/speechcommon.cpp, static PromptData PromptData::parse(const QString&, "
                   "PromptContext), default)";
            const bool warns = row.text == nullptr && context != u("10");
            QCOMPARE(log->takeLines(), warns ? QStringList(line) : QStringList());
        }
    }

    void everyFormHasARow() {
        for (const PromptForm& form : promptForms) {
            const QRegularExpression pattern(
                u("\\A[^<]*%1[^<]*\\z").arg(u(form.pattern.source)), QRegularExpression::DotMatchesEverythingOption);
            const auto isOfForm = [&pattern](const auto& row) { return pattern.match(u(row.input)).hasMatch(); };
            QVERIFY2(std::any_of(std::begin(prompts), std::end(prompts), isOfForm), qPrintable(pattern.pattern()));
            const QRegularExpressionMatch match = pattern.match(form.written(u("t"), u("l"), u("g")));
            // A form without a genre gives 0, the number of the whole match.
            QCOMPARE(match.captured(form.text) + match.captured(form.genre).right(1), u(form.genre != 0 ? "tg" : "t>"));
        }
    }

    void a4aReadsTheFile_data() { addRows(files); }
    void a4aReadsTheFile() {
        const auto& [name, content, text] = currentRow(files);
        const QTemporaryDir folder;
        const QString fileName = folder.filePath(u("prompt.xml"));
        QVERIFY(content.isNull() || writeFile(fileName, content));
        for (const char* form : {"<file language='x' path='%1'/>", "<file language='x' path='/'/><file path='%1'/>"}) {
            const QString input = quoted(form).arg(fileName);
            QCOMPARE(described(PromptData::parse(input, A4AContext)),
                text == nullptr ? u("0 255 - ") + fileName : u("3 255 - ") + u(text));
            const QString warning =
                u("warning: %1 Failed to open \"%2\" (src/core/speech/speechcommon.cpp, %1, default)")
                    .arg(u("bool<unnamed>::a4AParse(const QString&, PromptData&)"), fileName);
            QCOMPARE(log->takeLines(), content.isNull() ? QStringList(warning) : QStringList());
        }
    }

    void brandSounds_data() { addRows(soundTables); }
    void brandSounds() {
        const auto& row = currentRow(soundTables);
        QVERIFY(writeFile(soundsFileName(), quoted(row.json).toUtf8()));
        const auto sounds = loadBrandSounds(u("BR%1and"));
        QVERIFY(loadBrandSounds(u("x"), u("/none.json")).isEmpty());
        log->takeTexts();
        QCOMPARE(loadBrandSounds(u("BR%1and"), soundsFileName()), sounds);
        QStringList table;
        for (auto sound = sounds.begin(); sound != sounds.end(); ++sound) {
            table += sound.key() + u("=") + sound.value();
            QCOMPARE(soundPath(sound.key()), sound.value());
        }
        table.sort();
        QCOMPARE(table.join(u(" ")), u(row.table));
        QCOMPARE(log->takeTexts().size(), 1); // one for loading the file
    }

    void soundPathLoadsWhileTheTableIsEmpty() {
        const QString input = u("<text language=\"x\">ding.</text>");
        QCOMPARE(soundPath(u("ding")) + soundPath(u("ding")), QString());
        QCOMPARE(log->takeTexts().size(), 2); // the file was looked for twice
        QVERIFY(writeFile(soundsFileName(), R"([{"id": "ding", "value": "/%1"}])"));
        QCOMPARE(PromptData::parse(input, GeneralContext).mode, PromptText); // parsing never loads
        QCOMPARE(soundPath(u("ding")), u("/tyx"));
        QCOMPARE(soundPath(u("dong")), QString());
        QCOMPARE(log->takeTexts().size(), 1);
        for (const PromptContext context : {GeneralContext, BrandSoundContext, A4AContext}) {
            QCOMPARE(described(PromptData::parse(input, context)), u("1 255 - /tyx"));
            // An id without markup is a brand sound only in BrandSoundContext.
            QCOMPARE(
                PromptData::parse(u("ding"), context).mode, context == BrandSoundContext ? PromptAudio : PromptText);
        }
    }

    void mp3Conversion() {
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

    // Exceeds the test's time limit unless the work is linear in the text.
    void longPrompts() {
        for (const PromptForm& form : promptForms) {
            const QString source = u(form.pattern.source);
            const QString heads = (source.section(QLatin1Char('('), 0, 0) + u("a ")).repeated(30'000);
            const QString text = heads + source.section(QLatin1Char(')'), -1) + QString(600'000, QLatin1Char('x'));
            QVERIFY(!PromptData::parse(text, A4AContext).text.isEmpty());
        }
    }

    void parsesInSeveralThreads() {
        QVERIFY(isAlwaysTrue(8, 2000, [](int number) {
            const QString text = QString::number(number);
            return PromptData::parse(u("<offboard>%1</offboard>").arg(text), A4AContext).text == text;
        }));
    }

private:
    std::optional<LogCapture> log;
};

QTEST_GUILESS_MAIN(SpeechCommonTest)
#include "speechcommontest.moc"
