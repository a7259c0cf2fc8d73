#include <core/speech/speechcommon_p.h>

#include <support/childprocess.h>
#include <support/helpers.h>

#include <QLockFile>
#include <QTemporaryDir>
#include <QTest>

#include <array>

// Runs the program as a user does; ORV_PROGRAM is its path.
class OrvTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
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
        QVERIFY(QDir(folder.path()).mkdir(u("bin")) && QFile::copy(u(ORV_PROGRAM), folder.filePath(u("bin/orv"))));
        write("changed.json", R"([{"filePath": "files/a", "type": 1, "checksum": "x"}, {"filePath": "gone", "type": 1},
            {"filePath": "files", "type": 1}])");
    }

    void answers_data()
    {
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
    void answers()
    {
        using Lines = QMap<char, QByteArray>;
        QFETCH(Lines, lines);
        for (int at = 0; (at = lines['<'].indexOf("\\x", at)) >= 0; ++at) {
            lines['<'].replace(at, 4, QByteArray::fromHex(lines['<'].mid(at + 2, 2)));
        }
        QStringList words = lines['$'].isEmpty() ? QStringList() : u(lines['$']).split(QLatin1Char(' '));
        const QString program = words.removeOne(u("orv")) ? folder.filePath(u("bin/orv")) : u(ORV_PROGRAM);
        const ChildResult result = runChild(words, program, lines['<'], folder.path());
        QCOMPARE(result.output, lines['>']);
        QCOMPARE(result.error, lines['!']);
        QCOMPARE(result.exitCode, lines['='].trimmed().toInt());
    }

    void everyFormOfMarkupIsToldOf()
    {
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
            QVERIFY2(
                isNearest || form.rule == BrandSoundRule, qPrintable(u("tools/orv/promptcheck.cpp lacks ") + markup));
            QCOMPARE(findings.contains(u("unknown language: \"ISO\"")), markup.contains(u("ISO")));
        }
    }

    void checksumsOfTheCurrentFolder()
    {
        for (const char* path : {"a", "."}) {
            const QStringList words{u("checksum"), u("update"), u("--json"), u("--store"), u("here.json"), u(path)};
            const ChildResult result = runChild(words, u(ORV_PROGRAM), {}, folder.filePath(u("files")));
            const QByteArray unchanged = path[0] == '.' ? "1" : "0"; // for the second time
            QCOMPARE(result.output, R"({"changed":0,"new":1,"unchanged":)" + unchanged + "}\n");
        }
    }

    void updatesAtTheSameTime()
    {
        const QString store = folder.filePath(u("shared/store.json"));
        QVERIFY(writeFile(store, "[]") && QFile::link(store, folder.filePath(u("shared.json"))));
        QVERIFY(writeFile(store + u(".lock"), "999999999\norv\n\n")); // its process has ended
        std::array<ChildProcess, 4> updates;
        for (std::size_t i = 0; i < updates.size(); ++i) {
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

    void lockedStore()
    {
        const QString store = folder.filePath(u("locked.json"));
        QVERIFY(writeFile(store, "[]") && QFile::link(store, folder.filePath(u("link.json"))));
        QFile file(store + u(".lock"));
        QLockFile lock(file.fileName());
        QVERIFY(lock.tryLock() && file.open(QIODevice::ReadOnly));
        const QByteArray content = file.readAll();
        qint64 process = 0;
        QString host;
        QString program;
        QVERIFY(lock.getLockInfo(&process, &host, &program));
        // Held for long, and on a file system where the lock file is all there is of a lock.
        lock.unlock();
        file.close();
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) > 0 && file.flush());
        QVERIFY(file.setFileTime(QDateTime::currentDateTime().addDays(-1), QFile::FileModificationTime));
        const QString refusal = u("orv: \"link.json\" is locked by process %1 (%2) on %3; if that has ended, remove "
                                  "\"%4\"\n");
        std::array<ChildProcess, 2> writers;
        for (std::size_t i = 0; i < writers.size(); ++i) {
            writers[i].setWorkingDirectory(folder.path());
            writers[i].start(u(ORV_PROGRAM),
                {u("checksum"), u(i == 0 ? "update" : "remove"), u("--store"), u("link.json"), u("files")});
        }
        for (ChildProcess& writer : writers) {
            QVERIFY(writer.waitForFinished());
            QCOMPARE(u(writer.readAllStandardError()),
                refusal.arg(QCoreApplication::applicationPid()).arg(program, host, file.fileName()));
            QCOMPARE(writer.exitCode(), 2);
        }
    }

    void outputThatCannotBeWritten()
    {
        ChildProcess child;
        child.setWorkingDirectory(folder.path());
        child.setStandardOutputFile(u("/dev/full"));
        child.start(u(ORV_PROGRAM), {u("table"), u("table.eco")});
        QVERIFY(child.waitForFinished());
        QCOMPARE(child.readAllStandardError(),
            QByteArray("orv: table.eco: lines dropped: 1 (4)\norv: cannot write to standard output\n"));
        QCOMPARE(child.exitCode(), 2);
    }

    void helpAndVersion()
    {
        for (const char* command :
            {"check", "checksum", "genre", "inflate", "json", "language", "prompt", "sentences", "sound", "table"}) {
            for (const char* option : {"--help", "--version"}) {
                const ChildResult result = runChild({u(command), u(option)}, u(ORV_PROGRAM));
                const QByteArray help = QByteArray("Usage: orv ") + command + " [options]";
                QVERIFY(result.output.startsWith(option[2] == 'h' ? help : "orv " ORV_VERSION "\n"));
                const QByteArray example = QByteArray("\nExamples:\n  orv ") + command + ' ';
                QCOMPARE(result.output.contains(example), option[2] == 'h');
                QCOMPARE(result.exitCode, 0);
            }
        }
    }

private:
    /** The transcripts of a page; its other samples have names, behind their language, and are written as files. */
    QByteArray transcripts(const char* page)
    {
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
};

QTEST_GUILESS_MAIN(OrvTest)
#include "orvtest.moc"
