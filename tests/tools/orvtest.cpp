#include <core/speech/speechcommon.h>
#include <core/speech/speechcommon_p.h>

#include <support/childprocess.h>
#include <support/helpers.h>

#include <cstdio>
#include <cstdlib>

#include <fcntl.h>

constexpr bool isEmulated = sizeof TEST_EMULATOR > 1;

/** The files in the folder where the commands run. */
const struct {
    const char* name;
    QByteArray content;
} files[] = {{"data.json", R"({"a": {"b": "x", "n": null}, "": 1})"}, {"broken.json", "{\n"},
    {"table.eco", "#ECO 1 -;\n#Column id\n#Column name\nearly\n1;\nx; \"y,\"z"}, {"files/a", "a\n"},
    {"files/deep/b", "b\n"}, {"a;b", "a\n"}, {"offboard/one.xml", R"(<tts lang="de_ED"/><offboard>News</offboard>)"},
    {"offboard/two.xml", R"(<offboard>News <file path="offboard/one.xml"/>)"},
    {"offboard/three.xml", "<offboard>\xFF</offboard> x"}, {"spelling.json", R"([
            {"filePath": "./files/a", "type": 1, "checksum": "60b725f10c9c85c70d97880dfe8191b3"},
            {"filePath": "files/./a", "type": 1, "checksum": "60b725f10c9c85c70d97880dfe8191b3"}])"},
    {"locked/store.json", "[]"}, {"gone.json", R"([{"filePath": "gone/a", "type": 1}, {"filePath": "/a", "type": 1}])"},
    {"two", "2"}, {"binary", "\x7Fxyz\n\x01\n\n\xFF;\"\n"},
    {"sounds.json", R"([{"id": "ding", "value": "%1"}, {"id": "dong", "value": "files/a"}])"},
    {"prompts/a.txt", "<text>ok</text> you\n<text></text>\n"}, {"prompts/deep/b.txt", "x <text>ok</text>"},
    {"prompts/notes.md", "x"},
    {"baseline.json", R"({"file": "prompts/a.txt", "rule": "nothing-spoken", "reason": "nothing is spoken"})"},
    {"changed.json", R"([{"filePath": "files/a", "type": 1, "checksum": "x"}, {"filePath": "gone", "type": 1},
            {"filePath": "files", "type": 1}])"}};

/** A terminal: the test reads what programs print and writes what a user types. */
struct Terminal : QFile {
    Terminal() { open(posix_openpt(O_RDWR | O_NOCTTY), ReadWrite | Unbuffered, AutoCloseHandle); }
    QString name() const { return grantpt(handle()) + unlockpt(handle()) == 0 ? u(ptsname(handle())) : QString(); }
};

// Runs the program as a user does; ORV_PROGRAM is its path.
class OrvTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        for (const auto& file : files) { QVERIFY(writeFile(folder.filePath(u(file.name)), file.content)); }
        QVERIFY(QDir(folder.path()).mkdir(u("bin")) && QFile::copy(u(ORV_PROGRAM), folder.filePath(u("bin/orv"))));

        // A lock that is a day old, and only a file: some file systems have no other locks. The commands that wait for
        // it do so while the other tests run.
        const QByteArray process = QByteArray::number(QCoreApplication::applicationPid());
        QVERIFY(QFile::link(folder.filePath(u("locked/store.json")), folder.filePath(u("link.json"))));
        QFile lock(folder.filePath(u("locked/store.json.lock")));
        QVERIFY(lock.open(QIODevice::ReadWrite));
        lock.write(process + "\norvtest\n" + QSysInfo::machineHostName().toUtf8() + "\n");
        QVERIFY(
            lock.flush() && lock.setFileTime(QDateTime::currentDateTime().addDays(-1), QFile::FileModificationTime));
        // Its second block waits, because nobody reads the output.
        QVERIFY(writeFile(folder.filePath(u("large.z")), qCompress(QByteArray(1 << 18, 'x'), 0).mid(4)));
        slowOutput.setStandardErrorFile(slowTerminal.name());
        start(slowOutput, "inflate large.z");
        start(lockedOut[0], "checksum update --store link.json locked");
        start(lockedOut[1], "checksum remove --store link.json locked");
    }

    void answers_data() {
        QTest::addColumn<QMap<char, QByteArray>>("lines"); // by mark
        QStringList blocks = u(readData("orv.txt") + transcripts("../../docs/formats.md")).split(u("\n$"));
        auto number = blocks.takeFirst().count(QLatin1Char('\n')) + 2; // of the block's first line
        for (const QString& block : qAsConst(blocks)) {
            QMap<char, QByteArray> lines;
            for (const QByteArray& line : ('$' + block.toUtf8()).split('\n')) {
                const bool isOpen = line.size() > 1 && line[1] == line[0];
                if (!line.isEmpty() && line[0] != '#') {
                    lines[line[0]] += line.mid(isOpen ? 3 : 2) + (isOpen ? "" : "\n");
                }
            }
            QTest::addRow("line %d:%s", int(number), qUtf8Printable(block.section(QLatin1Char('\n'), 0, 0))) << lines;
            number += block.count(QLatin1Char('\n')) + 1;
        }
    }
    void answers() {
        using Lines = QMap<char, QByteArray>;
        QFETCH(Lines, lines);
        for (QByteArray::size_type at = 0; (at = lines['<'].indexOf("\\x", at)) >= 0; ++at) {
            lines['<'].replace(at, 4, QByteArray::fromHex(lines['<'].mid(at + 2, 2)));
        }
        QStringList words = split(lines['$'].chopped(1));
        const QString program = words.removeOne(u("orv")) ? folder.filePath(u("bin/orv")) : u(ORV_PROGRAM);
        const ChildResult result = runChild(words, program, lines['<'], folder.filePath(u(lines['@'].trimmed())));
        QCOMPARE(result.output, lines['>']);
        QCOMPARE(result.error, lines['!']);
        QCOMPARE(result.exitCode, lines['='].trimmed().toInt());
        if (words.contains(u("--json"))) { checkShapes(words, result.output); }
    }

    void everyFormOfMarkupIsDocumented() {
        for (const PromptForm& form : promptForms) {
            const bool isPath = form.mode == PromptAudio || form.mode == PromptFile;
            const QString text = form.rule == BrandSoundRule ? u("ID") : isPath ? u("PATH") : u("TEXT");
            const QString markup = form.written(text, u("ISO"), u("GENRE"));
            for (const QString& page : {u("src/core/speech/speechcommon.h"), u("docs/formats.md")}) {
                QVERIFY2(
                    u(readFile(u(TEST_SOURCES) + page)).contains(markup), qPrintable(page + u(" lacks ") + markup));
            }
            const QByteArray input = (markup.chopped(1) + u("\n") + markup).toUtf8();
            const QString findings = u(orv("check prompts --context a4a -", input).output);
            const bool isNearest = findings.contains(u("the nearest form is ") + markup + u(";"));
            const QByteArray sounds = orv("check prompts --context brandsound -", markup.toUtf8()).output;
            QVERIFY2((isNearest || form.rule == BrandSoundRule) && !sounds.contains(": > "),
                qPrintable(u("tools/orv/checks/prompts.cpp lacks the tag or form of ") + markup));
            QCOMPARE(findings.contains(u("unknown language: \"ISO\"")), markup.contains(u("ISO")));
        }
    }

    void updatesAtTheSameTime() {
        const QString store = folder.filePath(u("shared/store.json"));
        QVERIFY(writeFile(store, "[]") && QFile::link(store, folder.filePath(u("shared.json"))));
        QVERIFY(writeFile(store + u(".lock"), "999999999\norv\n\n")); // of a process that has ended
        ChildProcess updates[4];
        for (int i = 0; i < 4; ++i) {
            const QString data = folder.filePath(u("shared/%1").arg(i));
            QVERIFY(writeFile(data, {}) && QFile::resize(data, 8'000'000)); // large: all start before the first ends
            const QByteArray name = i % 2 ? "shared.json" : "shared/store.json";
            start(updates[i], "checksum update --store " + name + " shared/" + QByteArray::number(i));
        }
        for (ChildProcess& update : updates) {
            QVERIFY(update.waitForFinished());
            QCOMPARE(update.readAllStandardOutput(), QByteArray("1 new, 0 changed, 0 unchanged\n"));
        }
        QCOMPARE(orv("checksum verify --store shared.json shared").output, QByteArray()); // no other file is left
    }

    void namesThatAreNotUtf8() {
        if (isEmulated) { QSKIP("the emulated system has no locales, so all names are valid"); }
        const QByteArray data = QFile::encodeName(folder.filePath(u("names")));
        QVERIFY(writeFile(folder.filePath(u("names/a")), {}));
        QCOMPARE(rename((data + "/a").constData(), (data + "/a\xE9-").constData()), 0);
        for (const char* action : {"update", "verify"}) {
            const ChildResult result = orv("checksum " + QByteArray(action) + " --store names.json names");
            QVERIFY(result.error.startsWith("orv: names/a\\xe9-: the name is not valid UTF-8\n"));
            QCOMPARE(result.exitCode, 2);
        }
        QCOMPARE(std::remove((data + "/a\xE9-").constData()), 0); // QTemporaryDir cannot
    }

    // The output has what the schema of SARIF 2.1.0 requires, and the findings of --json.
    void findingsAsSarif() {
        QVERIFY(writeFile(folder.filePath(u("sarif/ü %.txt")), "<TEXT>ä</TEXT>\n\xFF\n<text></text>"));
        const QJsonObject log = QJsonDocument::fromJson(orv("check prompts sarif prompts --sarif").output).object();
        const QJsonValue run = log[u("runs")][0];
        const QJsonValue driver = run[u("tool")][u("driver")];
        const QJsonArray heads{log[u("$schema")], log[u("version")], run[u("columnKind")], driver[u("name")]};
        const QString schema = u("https://json.schemastore.org/sarif-2.1.0.json");
        QCOMPARE(heads, (QJsonArray{schema, u("2.1.0"), u("utf16CodeUnits"), u("orv")}));
        QSet<QString> ids;
        for (const QJsonValue& rule : driver[u("rules")].toArray()) {
            QVERIFY(!rule[u("shortDescription")][u("text")].toString().isEmpty());
            const QString level = rule[u("defaultConfiguration")][u("level")].toString();
            QVERIFY(level == u("note") || level == u("warning") || level == u("error"));
            ids += rule[u("id")].toString();
        }
        QCOMPARE(ids.size(), driver[u("rules")].toArray().size());
        const QString help = u(orv("help check").output).section(u("\nRules:\n"), 1);
        QCOMPARE(help.section(u("\n\n"), 0, 0).count(QLatin1Char('\n')) + 1, ids.size());
        QByteArray findings;
        for (const QJsonValue& finding : run[u("results")].toArray()) {
            QCOMPARE(driver[u("rules")][finding[u("ruleIndex")].toInt(-1)][u("id")], finding[u("ruleId")]);
            const QJsonValue place = finding[u("locations")][0][u("physicalLocation")];
            const QUrl uri(place[u("artifactLocation")][u("uri")].toString(), QUrl::StrictMode);
            const QJsonValue region = place[u("region")];
            const QJsonObject line{{u("file"), uri.path()}, {u("line"), region[u("startLine")]},
                {u("column"), region[u("startColumn")]}, {u("severity"), finding[u("level")]},
                {u("reason"), finding[u("message")][u("text")]}, {u("rule"), finding[u("ruleId")]}};
            findings += QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
        }
        QCOMPARE(orv("check prompts sarif prompts --json").output, findings);
        QVERIFY(findings.contains("ü %.txt"));
    }

    void findingsInAnEditor() {
        const QString vim = QStandardPaths::findExecutable(u("vim"));
        if (vim.isEmpty() || isEmulated) { QSKIP("there is no vim that this system runs: scripts/setup vim"); }
        QVERIFY(writeFile(folder.filePath(u("errors")), orv("check prompts prompts").output));
        const QString list = u("call writefile(map(getqflist(), 'bufname(v:val.bufnr) . \" \" . v:val.lnum . \" \" . "
                               "v:val.col . v:val.text[:8]'), 'quickfix')");
        runChild({u("-u"), u("NONE"), u("-es"), u("-c"), u("cgetfile errors"), u("-c"), list, u("-c"), u("qall!")}, vim,
            {}, folder.path());
        QCOMPARE(readFile(folder.filePath(u("quickfix"))),
            QByteArray("prompts/a.txt 1 17 warning:\nprompts/a.txt 2 1 warning:\nprompts/deep/b.txt 1 1 warning:\n"));
    }

    // The checks report exactly the prompts that the library speaks whole, with their tags.
    void checksAgreeWithTheLibrary() {
        QRandomGenerator random(1);
        const QStringList fragments{u("<text>"), u("</text>"), u("<text language=\"de_DE\">"), u("<audio path=\"a\"/>"),
            u("<file language=\"x\" path=\"a b\"/>"), u("<tts lang=\"de_DE\"/>"), u("<offboard>"), u("</offboard>"),
            u("<offboard genre=\"g\">"), u("<phonetic>"), u("</phonetic>"), u("<"), u(">"), u("\""), u("ding"), u(" "),
            u("# "), u("&amp;"), u("\\!\\"), u("%1")};
        for (const auto context : {GeneralContext, BrandSoundContext, A4AContext}) {
            QStringList prompts;
            for (int round = testRounds(3); round > 0; --round) { prompts += randomText(random, fragments, 8); }
            prompts.removeDuplicates();
            const QByteArray words = " --sounds sounds.json --json - --context " + QByteArray::number(context);
            const QByteArray input = prompts.join(QLatin1Char('\n')).toUtf8();
            QSet<int> found;
            for (const QByteArray& line : orv("check prompts" + words, input).output.split('\n')) {
                const QJsonObject finding = QJsonDocument::fromJson(line).object();
                const QStringList rules{u("blank-in-path"), u("unknown-form"), u("wrong-context")};
                if (rules.contains(finding[u("rule")].toString())) { found += finding[u("line")].toInt(); }
            }
            QSet<int> expected;
            for (const QByteArray& line : orv("prompt" + words, input).output.split('\n')) {
                const QJsonObject prompt = QJsonDocument::fromJson(line).object();
                const QString text = prompts.value(prompt[u("line")].toInt() - 1);
                const bool isWhole = prompt[u("mode")] == u("text") && prompt[u("text")] == text;
                if (isWhole && text.contains(QLatin1Char('<'))) { expected += prompt[u("line")].toInt(); }
            }
            QVERIFY(!expected.isEmpty() && found == expected);
        }
    }

    void outputThatCannotBeWritten() {
        ChildProcess child;
        child.setStandardOutputFile(u("/dev/full"));
        start(child, "table table.eco");
        QVERIFY(child.waitForFinished());
        QCOMPARE(child.readAllStandardError(),
            QByteArray("orv: table.eco: lines dropped: 1 (4)\norv: cannot write to standard output\n"));
        QCOMPARE(child.exitCode(), 2);
    }

    void helpAndVersion() {
        QCOMPARE(orv("-v").output + orv("--version").output, QByteArray("orv " ORV_VERSION "\norv " ORV_VERSION "\n"));
        const QString list = u(orv("help").output).section(u("Commands:\n"), 1).section(u("\n\n"), 0, 0);
        QVERIFY(list.contains(u("check")));
        for (const QString& row : list.split(QLatin1Char('\n'))) {
            const QByteArray command = row.simplified().section(QLatin1Char(' '), 0, 0).toUtf8();
            QCOMPARE(orv(command + " --version").output, QByteArray("orv " ORV_VERSION "\n"));
            const ChildResult help = orv(command + " --help");
            for (const QString& line : u(help.output).split(QLatin1Char('\n'))) { QVERIFY(line.size() <= 80); }
            QVERIFY(help.output.startsWith("Usage: orv " + command + " [options]"));
            QVERIFY(help.output.contains("\nExamples:\n  orv " + command + ' '));
            QCOMPARE(help.exitCode, 0);
            QCOMPARE(orv("help " + command).output, help.output);
        }
    }

    void remarkAndColoursOnATerminal() {
        qputenv("TERM", "xterm");
        qunsetenv("NO_COLOR");
        Terminal terminal;
        ChildProcess child;
        child.setStandardInputFile(terminal.name());
        child.setStandardOutputFile(terminal.name());
        child.setStandardErrorFile(terminal.name());
        start(child, "check prompts -");
        QCOMPARE(terminal.readLine(), QByteArray("orv: reading what you type; Ctrl-D on an empty line ends it\r\n"));
        terminal.write("\xFF\n<text language=\"de_DE\">a</text>b\n\x04");
        QVERIFY(child.waitForFinished());
        const QByteArray screen = terminal.readAll();
        for (const char* severity : {"\033[31merror\033[0m: ", "\033[33mwarning\033[0m: ", "\033[36mnote\033[0m: "}) {
            QVERIFY2(screen.contains(severity), screen.constData());
        }
    }

    // Runs last: checks the commands that initTestCase() started.
    void waitingCommands() {
        const QString refusal = u("orv: \"link.json\" is locked by process %1 (orvtest) on %2; if that has ended, "
                                  "remove \"%3\"\n");
        const QString process = QString::number(QCoreApplication::applicationPid());
        for (ChildProcess& writer : lockedOut) {
            QVERIFY(writer.state() == QProcess::NotRunning || writer.waitForFinished());
            // Under an emulator, the holder looks like another program, so its lock counts as stale.
            if (isEmulated) { continue; }
            QCOMPARE(u(writer.readAllStandardError()),
                refusal.arg(process, QSysInfo::machineHostName(), folder.filePath(u("locked/store.json.lock"))));
            QCOMPARE(writer.exitCode(), 2);
        }
        QVERIFY(slowOutput.waitForFinished()); // waited longer than the second before a bar is drawn
        const QString bar = u("^\r\\[#{19} {21}\\]  49 %  0\\.\\d MB/s  \\d:\\d\\d left\033\\[K");
        const QString screen = u(slowTerminal.readAll());
        QVERIFY2(screen.contains(QRegularExpression(bar)) && screen.endsWith(u("\r\033[K")), qPrintable(screen));
    }

private:
    /** The words of a command, separated by blanks. */
    static QStringList split(const QByteArray& command) {
        return command.isEmpty() ? QStringList() : u(command).split(QLatin1Char(' '));
    }
    void start(ChildProcess& child, const QByteArray& command) {
        child.setWorkingDirectory(folder.path());
        child.start(u(ORV_PROGRAM), split(command));
    }
    ChildResult orv(const QByteArray& command, const QByteArray& input = {}) {
        return runChild(split(command), u(ORV_PROGRAM), input, folder.path());
    }

    /** Checks that docs/json.md has each object, with the names and types of its fields. */
    void checkShapes(const QStringList& words, const QByteArray& output) {
        const QString command = words[0] == u("checksum") ? u("checksum ") + words[1] : words[0];
        const QString page = u(readData("../../docs/json.md")).section(u("\n## orv ") + command + u("\n"), 1, 1);
        QVector<QMap<QString, QString>> shapes; // the types of the fields by their names
        for (const QString& line : page.section(u("\n## "), 0, 0).split(QLatin1Char('\n'))) {
            const QString name = line.section(QLatin1Char('`'), 1, 1);
            if (line.startsWith(u("| Field"))) { shapes += QMap<QString, QString>(); }
            if (line.startsWith(u("| `")) && (name != u("sentences") || words.contains(u("--language")))) {
                shapes.last()[name] = line.section(u(" | "), 1, 1);
            }
        }
        static const QMap<QJsonValue::Type, QString> types = {{QJsonValue::Bool, u("boolean")},
            {QJsonValue::Double, u("number")}, {QJsonValue::Array, u("list")}, {QJsonValue::Object, u("object")},
            {QJsonValue::String, u("text")}, {QJsonValue::Null, u("text or null")}};
        for (const QByteArray& line : output.trimmed().split('\n')) {
            const QJsonObject object = QJsonDocument::fromJson(line).object();
            const auto isOf = [&object](const QMap<QString, QString>& shape) {
                const auto isTyped = [](const QString& type, const QJsonValue& field) {
                    return type.startsWith(types[field.type()]);
                };
                return shape.keys() == object.keys() && std::equal(shape.begin(), shape.end(), object.begin(), isTyped);
            };
            QVERIFY2(line.isEmpty() || std::any_of(shapes.begin(), shapes.end(), isOf), line.constData());
        }
    }

    /** The transcripts of a page. Samples with a name after their language are no transcripts: writes them as files. */
    QByteArray transcripts(const char* page) {
        QByteArray result;
        const QStringList pieces = u(readData(page)).split(u("\n```"));
        for (int i = 1; i < pieces.size(); i += 2) { // every second piece is a sample
            const QString name = pieces[i].section(QLatin1Char('\n'), 0, 0).section(QLatin1Char(' '), 1);
            const QByteArray content = pieces[i].section(QLatin1Char('\n'), 1).toUtf8() + '\n';
            name.isEmpty() ? void(result += content) : void(writeFile(folder.filePath(name), content));
        }
        return result;
    }

    QTemporaryDir folder;
    ChildProcess lockedOut[2];
    ChildProcess slowOutput;
    Terminal slowTerminal;
};

QTEST_GUILESS_MAIN(OrvTest)
#include "orvtest.moc"
