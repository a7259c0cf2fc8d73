#include <core/speech/speechcommon_p.h>

#include <support/childprocess.h>
#include <support/helpers.h>

#include <core/speech/speechcommon.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <cstdio>

constexpr bool isEmulated = sizeof TEST_EMULATOR > 1;

// Runs the program as a user does; ORV_PROGRAM is its path.
class OrvTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        const auto write = [this](const char* name, const QByteArray& content) {
            QVERIFY(writeFile(folder.filePath(u(name)), content));
        };
        write("data.json", R"({"a": {"b": "x", "n": null}, "": 1})");
        write("broken.json", "{\n");
        write("table.eco", "#ECO 1 -;\n#Column id\n#Column name\nearly\n1;\nx; \"y,\"z");
        write("files/a", "a\n");
        write("files/deep/b", "b\n");
        write("a;b", "a\n");
        write("offboard/one.xml", R"(<tts lang="de_ED"/><offboard>News</offboard>)");
        write("offboard/two.xml", R"(<offboard>News <file path="offboard/one.xml"/>)");
        write("offboard/three.xml", "<offboard>\xFF</offboard>");
        write("spelling.json", R"([
            {"filePath": "./files/a", "type": 1, "checksum": "60b725f10c9c85c70d97880dfe8191b3"},
            {"filePath": "files/./a", "type": 1, "checksum": "60b725f10c9c85c70d97880dfe8191b3"}])");
        write("gone.json", R"([{"filePath": "gone/a", "type": 1}])");
        write("two", "2");
        write("binary", "\x7Fxyz\n\x01\n\n\xFF;\"\n");
        write("sounds.json", R"([{"id": "ding", "value": "%1"}, {"id": "dong", "value": "files/a"}])");
        write("prompts/a.txt", "<text>ok</text> you\n<text></text>\n");
        write("prompts/deep/b.txt", "x <text>ok</text>");
        write("prompts/notes.md", "x");
        write("baseline.json", R"({"file": "prompts/a.txt", "rule": "nothing-spoken", "reason": "nothing is spoken"})");
        QVERIFY(QDir(folder.path()).mkdir(u("bin")) && QFile::copy(u(ORV_PROGRAM), folder.filePath(u("bin/orv"))));
        write("changed.json", R"([{"filePath": "files/a", "type": 1, "checksum": "x"}, {"filePath": "gone", "type": 1},
            {"filePath": "files", "type": 1}])");

        // Held for long, and on a file system where the lock file is all there is of a lock. The other tests run while
        // these wait.
        const QByteArray process = QByteArray::number(QCoreApplication::applicationPid());
        write("locked/store.json", "[]");
        write("locked/store.json.lock", process + "\norvtest\n" + QSysInfo::machineHostName().toUtf8() + "\n");
        QVERIFY(QFile::link(folder.filePath(u("locked/store.json")), folder.filePath(u("locked/link.json"))));
        QFile lock(folder.filePath(u("locked/store.json.lock")));
        QVERIFY(lock.open(QIODevice::ReadWrite));
        QVERIFY(lock.setFileTime(QDateTime::currentDateTime().addDays(-1), QFile::FileModificationTime));
        for (const bool removes : {false, true}) {
            lockedOut[removes].setWorkingDirectory(folder.filePath(u("locked")));
            lockedOut[removes].start(u(ORV_PROGRAM),
                {u("checksum"), u(removes ? "remove" : "update"), u("--store"), u("link.json"), u(".")});
        }
    }

    void answers_data() {
        QTest::addColumn<QMap<char, QByteArray>>("lines"); // by their mark
        QMap<char, QByteArray> lines;
        int number = 0;
        const auto finishCase = [&lines, &number] {
            if (lines.contains('$')) { QTest::addRow("line %d: %s", number, lines['$'].constData()) << lines; }
            lines.clear();
        };
        int lineNumber = 0;
        for (const QByteArray& line : (readData("orv.txt") + transcripts("../../docs/formats.md")).split('\n')) {
            ++lineNumber;
            if (line.startsWith('$')) {
                finishCase();
                number = lineNumber;
                lines['$'] = line.mid(2);
            } else if (!line.isEmpty() && line[0] != '#') {
                const bool isOpen = line.size() > 1 && line[1] == line[0];
                lines[line[0]] += line.mid(isOpen ? 3 : 2) + (isOpen ? "" : "\n");
            }
        }
        finishCase();
    }
    void answers() {
        using Lines = QMap<char, QByteArray>;
        QFETCH(Lines, lines);
        for (QByteArray::size_type at = 0; (at = lines['<'].indexOf("\\x", at)) >= 0; ++at) {
            lines['<'].replace(at, 4, QByteArray::fromHex(lines['<'].mid(at + 2, 2)));
        }
        QStringList words = lines['$'].isEmpty() ? QStringList() : u(lines['$']).split(QLatin1Char(' '));
        const QString program = words.removeOne(u("orv")) ? folder.filePath(u("bin/orv")) : u(ORV_PROGRAM);
        const ChildResult result = runChild(words, program, lines['<'], folder.path());
        QCOMPARE(result.output, lines['>']);
        QCOMPARE(result.error, lines['!']);
        QCOMPARE(result.exitCode, lines['='].trimmed().toInt());
        if (words.contains(u("--json"))) { checkShapes(words, result.output); }
    }

    void everyFormOfMarkupIsToldOf() {
        const QStringList check{u("check"), u("prompts"), u("--context"), u("a4a"), u("-")};
        const QString pages[] = {u("src/core/speech/speechcommon.h"), u("docs/formats.md")};
        for (const PromptForm& form : promptForms) {
            const bool isPath = form.mode == PromptAudio || form.mode == PromptFile;
            const QString text = form.rule == BrandSoundRule ? u("ID") : isPath ? u("PATH") : u("TEXT");
            const QString markup = form.written(text, u("ISO"), u("GENRE"));
            for (const QString& page : pages) {
                QVERIFY2(u(readData(qPrintable(u("../../") + page))).contains(markup),
                    qPrintable(page + u(" lacks ") + markup));
            }
            const QString input = markup.chopped(1) + u("\n") + markup;
            const QString findings = u(runChild(check, u(ORV_PROGRAM), input.toUtf8()).output);
            const bool isNearest = findings.contains(u("the nearest form is ") + markup + u(";"));
            QVERIFY2(isNearest || form.rule == BrandSoundRule,
                qPrintable(u("tools/orv/checks/prompts.cpp lacks ") + markup));
            QCOMPARE(findings.contains(u("unknown language: \"ISO\"")), markup.contains(u("ISO")));
            const QStringList soundsOnly{u("check"), u("prompts"), u("--context"), u("brandsound"), u("-")};
            QVERIFY2(!runOrv(soundsOnly, markup.toUtf8()).output.contains(": > "),
                qPrintable(u("tools/orv/checks/prompts.cpp lacks the tag of ") + markup));
        }
    }

    void checksumsOfTheCurrentFolder() {
        for (const char* path : {"a", "."}) {
            const QStringList words{u("checksum"), u("update"), u("--json"), u("--store"), u("here.json"), u(path)};
            const ChildResult result = runChild(words, u(ORV_PROGRAM), {}, folder.filePath(u("files")));
            const QByteArray unchanged = path[0] == '.' ? "1" : "0"; // for the second time
            QCOMPARE(result.output, R"({"changed":0,"new":1,"unchanged":)" + unchanged + "}\n");
        }
    }

    void updatesAtTheSameTime() {
        const QString store = folder.filePath(u("shared/store.json"));
        QVERIFY(writeFile(store, "[]") && QFile::link(store, folder.filePath(u("shared.json"))));
        QVERIFY(writeFile(store + u(".lock"), "999999999\norv\n\n")); // its process has ended
        ChildProcess updates[4];
        for (int i = 0; i < 4; ++i) {
            const QString data = folder.filePath(u("shared/%1").arg(i));
            QVERIFY(writeFile(data, {}) && QFile::resize(data, 8'000'000)); // all have begun before the first ends
            updates[i].setWorkingDirectory(folder.path());
            updates[i].start(u(ORV_PROGRAM),
                {u("checksum"), u("update"), u("--store"), u(i % 2 ? "shared.json" : "shared/store.json"), data});
        }
        for (ChildProcess& update : updates) {
            QVERIFY(update.waitForFinished());
            QCOMPARE(update.readAllStandardOutput(), QByteArray("1 new, 0 changed, 0 unchanged\n"));
        }
        const QStringList verify{u("checksum"), u("verify"), u("--store"), store, folder.filePath(u("shared"))};
        QCOMPARE(runChild(verify, u(ORV_PROGRAM)).output, QByteArray()); // nor is another file left
    }

    void namesThatAreNotUtf8() {
        if (isEmulated) { QSKIP("the emulated system has no locales, so all names are valid"); }
        const QByteArray data = QFile::encodeName(folder.filePath(u("names")));
        QVERIFY(writeFile(folder.filePath(u("names/a")), {}));
        QCOMPARE(rename((data + "/a").constData(), (data + "/a\xE9-").constData()), 0);
        for (const char* action : {"update", "verify"}) {
            const ChildResult result = runOrv({u("checksum"), u(action), u("--store"), u("names.json"), u("names")});
            QVERIFY(result.error.startsWith("orv: names/a\\xe9-: the name is not valid UTF-8\n"));
            QCOMPARE(result.exitCode, 2);
        }
        QCOMPARE(std::remove((data + "/a\xE9-").constData()), 0); // QTemporaryDir does not see it
    }

    // What the schema of SARIF 2.1.0 requires, and the same findings as otherwise.
    void findingsAsSarif() {
        QVERIFY(writeFile(folder.filePath(u("sarif/ü %.txt")), "<TEXT>ä</TEXT>\n\xFF\n<text></text>"));
        const QStringList check{u("check"), u("prompts"), u("sarif"), u("prompts")};
        const QJsonObject log = QJsonDocument::fromJson(runOrv(check + QStringList{u("--sarif")}).output).object();
        QCOMPARE(log[u("version")], QJsonValue(u("2.1.0")));
        const QJsonValue run = log[u("runs")][0];
        QCOMPARE(run[u("columnKind")], QJsonValue(u("utf16CodeUnits")));
        const QJsonValue driver = run[u("tool")][u("driver")];
        QCOMPARE(driver[u("name")], QJsonValue(u("orv")));
        QSet<QString> ids;
        for (const QJsonValue& rule : driver[u("rules")].toArray()) {
            QVERIFY(!rule[u("shortDescription")][u("text")].toString().isEmpty());
            const QStringList levels{u("note"), u("warning"), u("error")};
            QVERIFY(levels.contains(rule[u("defaultConfiguration")][u("level")].toString()));
            ids += rule[u("id")].toString();
        }
        QCOMPARE(ids.size(), driver[u("rules")].toArray().size());
        const QString help = u(runOrv({u("help"), u("check")}).output).section(u("\nRules:\n"), 1);
        QCOMPARE(help.section(u("\n\n"), 0, 0).count(QLatin1Char('\n')) + 1, ids.size());
        QByteArray findings;
        for (const QJsonValue& finding : run[u("results")].toArray()) {
            QCOMPARE(driver[u("rules")][finding[u("ruleIndex")].toInt(-1)][u("id")], finding[u("ruleId")]);
            const QJsonValue place = finding[u("locations")][0][u("physicalLocation")];
            const QUrl uri(place[u("artifactLocation")][u("uri")].toString(), QUrl::StrictMode);
            const QJsonValue region = place[u("region")];
            findings +=
                QJsonDocument({{u("file"), uri.path()}, {u("line"), region[u("startLine")]},
                                  {u("column"), region[u("startColumn")]}, {u("severity"), finding[u("level")]},
                                  {u("reason"), finding[u("message")][u("text")]}, {u("rule"), finding[u("ruleId")]}})
                    .toJson(QJsonDocument::Compact)
                + '\n';
        }
        QCOMPARE(runOrv(check + QStringList{u("--json")}).output, findings);
        QVERIFY(findings.contains("ü %.txt"));
    }

    void findingsInAnEditor() {
        const QString vim = QStandardPaths::findExecutable(u("vim"));
        if (vim.isEmpty() || isEmulated) { QSKIP("there is no vim that this system runs: scripts/setup vim"); }
        QVERIFY(writeFile(folder.filePath(u("errors")), runOrv({u("check"), u("prompts"), u("prompts")}).output));
        const QString list = u("call writefile(map(getqflist(), 'bufname(v:val.bufnr) . \" \" . v:val.lnum . \" \" . "
                               "v:val.col . v:val.text[:8]'), 'quickfix')");
        runChild({u("-u"), u("NONE"), u("-es"), u("-c"), u("cgetfile errors"), u("-c"), list, u("-c"), u("qall!")}, vim,
            {}, folder.path());
        QFile quickfix(folder.filePath(u("quickfix")));
        QVERIFY(quickfix.open(QIODevice::ReadOnly));
        QCOMPARE(quickfix.readAll(),
            QByteArray("prompts/a.txt 1 17 warning:\nprompts/a.txt 2 1 warning:\nprompts/deep/b.txt 1 1 warning:\n"));
    }

    // What the library speaks whole, tags included, is what the checks say so of.
    void checksAgreeWithTheLibrary() {
        QRandomGenerator random(1);
        const QStringList fragments{u("<text>"), u("</text>"), u("<text language=\"de_DE\">"), u("<audio path=\"a\"/>"),
            u("<file language=\"x\" path=\"a b\"/>"), u("<tts lang=\"de_DE\"/>"), u("<offboard>"), u("</offboard>"),
            u("<offboard genre=\"g\">"), u("<phonetic>"), u("</phonetic>"), u("<"), u(">"), u("\""), u("ding"), u(" "),
            u("# "), u("&amp;"), u("\\!\\"), u("%1")};
        for (const auto context : {GeneralContext, BrandSoundContext, A4AContext}) {
            QStringList prompts;
            for (int round = testRounds(3); round > 0; --round) { prompts += randomText(random, fragments, 8); }
            const QString option = QString::number(context);
            const QStringList words{u("--sounds"), u("sounds.json"), u("--json"), u("--context"), option, u("-")};
            const QByteArray input = prompts.join(QLatin1Char('\n')).toUtf8();
            QSet<int> found;
            for (const QByteArray& line :
                runOrv(QStringList{u("check"), u("prompts")} + words, input).output.split('\n')) {
                const QJsonObject finding = QJsonDocument::fromJson(line).object();
                const QStringList rules{u("blank-in-path"), u("unknown-form"), u("wrong-context")};
                if (rules.contains(finding[u("rule")].toString())) { found += finding[u("line")].toInt(); }
            }
            QSet<int> expected;
            for (const QByteArray& line : runOrv(QStringList{u("prompt")} + words, input).output.split('\n')) {
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
        child.setWorkingDirectory(folder.path());
        child.setStandardOutputFile(u("/dev/full"));
        child.start(u(ORV_PROGRAM), {u("table"), u("table.eco")});
        QVERIFY(child.waitForFinished());
        QCOMPARE(child.readAllStandardError(),
            QByteArray("orv: table.eco: lines dropped: 1 (4)\norv: cannot write to standard output\n"));
        QCOMPARE(child.exitCode(), 2);
    }

    void helpAndVersion() {
        const QString list = u(runOrv({u("help")}).output).section(u("Commands:\n"), 1).section(u("\n\n"), 0, 0);
        QVERIFY(list.contains(u("check")));
        for (const QString& row : list.split(QLatin1Char('\n'))) {
            const QByteArray command = row.simplified().section(QLatin1Char(' '), 0, 0).toUtf8();
            const ChildResult help = runOrv({u(command), u("--help")});
            for (const QString& line : u(help.output).split(QLatin1Char('\n'))) { QVERIFY(line.size() <= 80); }
            QVERIFY(help.output.startsWith("Usage: orv " + command + " [options]"));
            QVERIFY(help.output.contains("\nExamples:\n  orv " + command + ' '));
            QCOMPARE(help.exitCode, 0);
            for (const QStringList& words : {QStringList{u(command), u("--version")}, {u("-v")}, {u("--version")}}) {
                QCOMPARE(runOrv(words).output, QByteArray("orv " ORV_VERSION "\n"));
            }
        }
    }

    // The last, as it waits for what began first.
    void lockedStore() {
        // There, the holder looks like another program, so its lock counts as left over.
        if (isEmulated) { QSKIP("an emulated process has the name of its emulator"); }
        const QString refusal = u("orv: \"link.json\" is locked by process %1 (orvtest) on %2; if that has ended, "
                                  "remove \"%3\"\n");
        const QString process = QString::number(QCoreApplication::applicationPid());
        for (ChildProcess& writer : lockedOut) {
            QVERIFY(writer.state() == QProcess::NotRunning || writer.waitForFinished());
            QCOMPARE(u(writer.readAllStandardError()),
                refusal.arg(process, QSysInfo::machineHostName(), folder.filePath(u("locked/store.json.lock"))));
            QCOMPARE(writer.exitCode(), 2);
        }
    }

private:
    ChildResult runOrv(const QStringList& words, const QByteArray& input = {}) {
        return runChild(words, u(ORV_PROGRAM), input, folder.path());
    }

    /** Finds each object in docs/json.md by the names and types of its fields. */
    void checkShapes(const QStringList& words, const QByteArray& output) {
        const QString command = words[0] == u("checksum") ? u("checksum ") + words[1] : words[0];
        const QString page = u(readData("../../docs/json.md")).section(u("\n## orv ") + command + u("\n"), 1, 1);
        QStringList shapes;
        for (const QString& line : page.section(u("\n## "), 0, 0).split(QLatin1Char('\n'))) {
            const QStringList cells = line.split(u(" | "));
            if (line.startsWith(u("| Field"))) { shapes += u(" "); }
            if (line.startsWith(u("| `"))) {
                shapes.last() += cells[0].section(QLatin1Char('`'), 1, 1) + u("=") + cells[1] + u(" ");
            }
        }
        static const QMap<QJsonValue::Type, QString> types = {{QJsonValue::Bool, u("boolean")},
            {QJsonValue::Double, u("number")}, {QJsonValue::Array, u("list")}, {QJsonValue::Object, u("object")},
            {QJsonValue::String, u("text")}, {QJsonValue::Null, u("text or null")}};
        for (const QByteArray& line : output.trimmed().split('\n')) {
            if (line.isEmpty()) { continue; }
            const QJsonObject object = QJsonDocument::fromJson(line).object();
            bool isKnown = false;
            for (const QString& shape : shapes) {
                auto fields = shape.count(QLatin1Char('='))
                              - (words.contains(u("--language")) ? 0 : shape.count(u(" sentences=list ")));
                for (auto field = object.begin(); field != object.end(); ++field) {
                    const QString start = u(" ") + field.key() + u("=");
                    const bool isNamed = shape.contains(start + types[field->type()] + u(" "))
                                         || (field->isString() && shape.contains(start + u("text or null ")));
                    fields -= isNamed ? 1 : fields + 1;
                }
                isKnown |= !object.isEmpty() && fields == 0;
            }
            QVERIFY2(isKnown, line.constData());
        }
    }

    /** The transcripts of a page; its other samples have names, behind their language, and are written as files. */
    QByteArray transcripts(const char* page) {
        QByteArray result;
        const QStringList pieces = u(readData(page)).split(u("\n```"));
        for (int i = 1; i < pieces.size(); i += 2) { // between them stands text
            const QString name = pieces[i].section(QLatin1Char('\n'), 0, 0).section(QLatin1Char(' '), 1);
            const QByteArray content = pieces[i].section(QLatin1Char('\n'), 1).toUtf8() + '\n';
            name.isEmpty() ? void(result += content) : void(writeFile(folder.filePath(name), content));
        }
        return result;
    }

    QTemporaryDir folder;
    ChildProcess lockedOut[2];
};

QTEST_GUILESS_MAIN(OrvTest)
#include "orvtest.moc"
