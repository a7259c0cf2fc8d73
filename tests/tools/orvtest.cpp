#include <support/helpers.h>

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

QByteArray json(const char* withSingleQuotes)
{
    return QByteArray(withSingleQuotes).replace('\'', '"');
}

const QByteArray twoSentences = "Das ist der erste Satz hier. Und das ist nun der zweite!";

} // namespace

// Runs the program as a user does; ORV_PROGRAM is its path.
class OrvTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(writeFile(folder.filePath(u("data.json")), json("{'a': {'b': 'x', 'n': null}, '': 1}")));
        QVERIFY(writeFile(folder.filePath(u("broken.json")), "{"));
        QVERIFY(
            writeFile(folder.filePath(u("table.eco")), "#ECO 1 -;\n#Column id\n#Column name\nearly\n1;\nx; \"y,\"z"));
        QVERIFY(writeFile(folder.filePath(u("files/a")), "a"));
        QVERIFY(writeFile(folder.filePath(u("a;b")), "a"));
        QVERIFY(writeFile(folder.filePath(u("files/deep/b")), "b"));
        QVERIFY(
            writeFile(folder.filePath(u("changed.json")), json("[{'filePath': 'files/a', 'type': 1, 'checksum': 'x'}, "
                                                               "{'filePath': 'gone', 'type': 1, 'checksum': 'y'}]")));
    }

    void run_data()
    {
        QTest::addColumn<QString>("arguments"); // separated by "|"
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QByteArray>("output");
        QTest::addColumn<QByteArray>("error");

        const auto row = [](const char* arguments, const QByteArray& input, int exitCode, const QByteArray& output,
                             const QByteArray& error = QByteArray()) {
            QTest::newRow(arguments) << u(arguments) << input << exitCode << output << error;
        };
        row("", "", 2, "", "orv: no command given (orv --help lists them)\n");
        row("nonsense", "", 2, "", "orv: unknown command: \"nonsense\" (orv --help lists them)\n");
        row("--version", "", 0, "orv " ORV_VERSION "\n");
        row("prompt|--nonsense", "", 2, "", "orv: Unknown option 'nonsense'.\n");
        row("prompt|a|b", "", 2, "", "orv: too many arguments: \"b\"\n");

        row("language|zh_CN|deu-DEU|34", "", 0,
            "VALUE  ISO     ISO NAME  ISO3     TTS ISO3  GROUP    NLU  PROMPTER  RECOGNIZER\n"
            "11     cmn_CN  zh_CN     cmn-CHN  cmn-CHN   Chinese  yes  yes       yes\n"
            "26     yue_CN  zh_CN     -        yue-HKG   Chinese  no   yes       yes\n"
            "1      de_DE   de_DE     deu-DEU  deu-DEU   -        yes  yes       yes\n"
            "34     th_TH   th_TH     -        tha-THA   -        no   no        no\n");
        row("language|--json|nl_NL|7|", "", 1,
            json("{'group':null,'iso':'nl_NL','iso3':null,'isoName':'nl_NL','nlu':false,'prompter':"
                 "true,"
                 "'recognizer':true,'ttsIso3':'nld-NLD','value':8}\n"),
            "orv: unknown language: \"7\"\norv: unknown language: \"\"\n");

        row("prompt|--language|de_DE", "<text>" + twoSentences + "</text>\r\n\n<text language=\"x\">welcome</text>", 0,
            "   1  text      " + twoSentences
                + "\n      > Das ist der erste Satz hier.\n      > Und das ist nun der zweite!\n"
                  "   2  text      \n   3  audio     examples/sounds/tyx/welcome.mp3\n");
        row("prompt|--context|A4A|--language|ko_KR",
            "<tts lang=\"de_DE\"/><offboard genre=\"news\">" + twoSentences + "</offboard>", 0,
            "   1  offboard  " + twoSentences
                + "\n      language  de_DE\n      genre     news\n"
                  "      > Das ist der erste Satz hier.\n      > Und das ist nun der zweite!\n");
        row("prompt|--context|10|--brand|AbC|--json|--language|de_DE", "welcome\nJa, ü.", 0,
            json("{'genre':'','language':null,'line':1,'mode':'audio','mp3ToWavConversion':false,"
                 "'sentences':[],'text':'examples/sounds/abc/welcome.mp3'}\n"
                 "{'genre':'','language':null,'line':2,'mode':'text','mp3ToWavConversion':false,"
                 "'sentences':['Ja, ü.'],'text':'Ja, ü.'}\n"));
        row("prompt|--verbose", "<", 0, "   1  text      <\n", "warning: Unable to parse given string:  \"<\"\n");
        row("prompt|--context|x", "", 2, "", "orv: unknown context: \"x\" (general, brandsound, a4a or a number)\n");
        row("prompt|missing.txt", "", 2, "", "orv: missing.txt: No such file or directory\n");
        row("prompt", "ok\n\xFF\n", 2, "   1  text      ok\n", "orv: standard input:2: not valid UTF-8\n");

        row("sentences|--language|de_DE|-", twoSentences + "\nJa.", 0,
            "Das ist der erste Satz hier.\nUnd das ist nun der zweite!\nJa.\n");
        row("sentences|--language|de_DE|--json", QByteArray("Ja\0!\n \n", 7), 0,
            "{\"line\":1,\"sentences\":[\"Ja\\u0000!\"]}\n{\"line\":2,\"sentences\":[]}\n");
        row("sentences", "", 2, "", "orv: the option --language is missing\n");
        row("sentences|--language|deu-DEU", "", 2, "",
            "orv: unknown language: \"deu-DEU\" (orv language lists them)\n");

        row("sound|welcome|nope", "", 1, "welcome  examples/sounds/tyx/welcome.mp3\n",
            "orv: unknown sound: \"nope\"\n");
        row("sound|--brand|AbC|--json|welcome.", "", 0,
            "{\"id\":\"welcome.\",\"path\":\"examples/sounds/abc/welcome.mp3\"}\n");

        row("json|data.json|a/b", "", 0, "\"x\"\n");
        row("json|data.json|a/n|--default|5", "", 0, "null\n");
        row("json|data.json|a/x|--default|[1,{}]", "", 0, "[1,{}]\n");
        row("json|data.json|a/x", "", 1, "", "orv: \"data.json\" has no value at \"a/x\"\n");
        row("json|data.json|a|--default|1,2", "", 2, "", "orv: the default is no JSON value: \"1,2\"\n");
        row("json|data.json", "", 2, "", "orv: a file and a path are needed (orv json --help)\n");
        row("json|missing.json|a", "", 2, "", "orv: \"missing.json\" does not exist.\n");
        row("json|broken.json|a", "", 2, "",
            "orv: Parsing \"broken.json\" failed due to \"unterminated object\" at 1\n");

        // One after the other on the same store.
        const char* const hash = "0cc175b9c0f1b6a831c399e269772661"; // of "a"
        row("checksum|update|--store|s.json|./files/|nope|a;b", "", 2, "2 new, 0 changed, 0 unchanged\n",
            "orv: nope: no such file\norv: a;b: a path with \";\" cannot be stored\n");
        row("checksum|list|--store|s.json|files/a", "", 0, QByteArray(hash) + "  00_00  default  files/a\n");
        row("checksum|verify|--store|s.json|--language|de_DE|files/a", "", 1, "new      files/a\n");
        row("checksum|verify|--store|changed.json", "", 1, "missing  gone\nchanged  files/a\n");
        row("checksum|verify|--store|changed.json|--json|files", "", 1,
            json("{'filePath':'files/a','status':'changed'}\n{'filePath':'files/deep/b','status':'new'}\n"));
        row("checksum|verify|--store|s.json|files", "", 0, "");
        row("checksum|remove|--store|s.json|files/deep", "", 0, "1 removed\n");
        row("checksum|remove|--store|s.json|files/deep", "", 1, "", "orv: nothing of that is stored\n");
        row("checksum|update|--store|broken.json|files", "", 2, "",
            "orv: Parsing \"broken.json\" failed due to \"unterminated object\" at 1\n");
        row("checksum|update|--store|no/s.json|files", "", 2, "",
            "orv: Unable to open file for writing \"no/s.json\"\n");
        row("checksum|update", "", 2, "", "orv: update needs a file or a folder\n");
        row("checksum|verify|--type|x", "", 2, "", "orv: unknown type: \"x\" (default or alternate)\n");

        row("table|table.eco", "", 0,
            "version 1, encoding -, separator \";\"\nENTRY  id  name\n1      1   -\n2      x   y,\"z\n",
            "orv: table.eco: lines dropped: 1 (4)\n");
        row("table|--csv|table.eco", "", 0, "id,name\n1,\nx,\"y,\"\"z\"\n", "orv: table.eco: lines dropped: 1 (4)\n");

        row("genre|--rds|9|32|--rbds|9|--satellite|NEWS/politics|x", "", 1,
            "VOCABULARY  CODE           VALUE  GENRE\nrds         9              0      Unknown\nrbds        9         "
            "     3      Charts\n"
            "satellite   NEWS/politics  28     News\nsatellite   NEWS/politics  31     Politics\n",
            "orv: unknown for --rds: \"32\"\norv: unknown for --satellite: \"x\"\n");
        row("genre|--json|--rbds|7", "", 0, json("{'code':'7','genre':'AdultHits','value':1,'vocabulary':'rbds'}\n"));
        row("genre|--rds|x", "", 2, "", "orv: no number for --rds: \"x\"\n");

        const QByteArray hello = QByteArray::fromHex("789ccb48cdc9c90700062c0215");
        row("inflate", hello + "rest", 0, "hello");
        row("inflate|-", hello.chopped(1), 1, "hello", "orv: standard input: the compressed data ends too early\n");
        row("inflate|-o|out", hello.chopped(1), 1, "", "orv: standard input: the compressed data ends too early\n");
        row("inflate|-o|out|data.json", "", 1, "",
            "orv: data.json: corrupt data: inflate() failed with result code -3\n");
        row("inflate|-o|out|--verbose", hello, 0, ""); // and no output was there before
        row("inflate|-o|data.json", hello, 2, "", "orv: data.json exists; --force overwrites it\n");
    }
    void run()
    {
        QFETCH(QString, arguments);
        QFETCH(QByteArray, input);
        QProcess program;
        program.setWorkingDirectory(folder.path());
        program.start(u(ORV_PROGRAM), arguments.isEmpty() ? QStringList() : arguments.split(QLatin1Char('|')));
        program.write(input);
        program.closeWriteChannel();
        QVERIFY(program.waitForFinished());
        QTEST(program.readAllStandardOutput(), "output");
        QByteArray error = program.readAllStandardError();
        const int ours = error.indexOf("warning: ");
        QTEST(ours > 0 ? error.mid(ours) : error, "error");
        QTEST(program.exitCode(), "exitCode");
    }

    void help()
    {
        for (const char* command : {"json", "language", "prompt", "sentences", "sound"}) {
            QProcess program;
            program.start(u(ORV_PROGRAM), {u(command), u("--help")});
            QVERIFY(program.waitForFinished());
            QCOMPARE(program.exitCode(), 0);
            const QByteArray output = program.readAllStandardOutput();
            QVERIFY2(output.startsWith(QByteArray("Usage: orv ") + command + " [options]"), output);
        }
    }

private:
    QTemporaryDir folder;
};

QTEST_GUILESS_MAIN(OrvTest)
#include "orvtest.moc"
