#include <core/parsers/ecofile.h>

#include <support/helpers.h>
#include <support/plainways.h>

#include <QTemporaryDir>
#include <QTest>

class EcoFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fields()
    {
        const struct {
            const char *line, *fields;
            int separator = ';';
        } rows[] = {
            {"a; \"b;c\" ;;d", "a|b;c||d"}, {"a;;b", "a||b"}, {"a;b;", "a|b|"}, {";b", "b"}, {"a;  b", "a| b"},
            {"a; \"x\" ", "a|x"}, {"a\"b;c\"d;e", "a\"b;c\"d|e"}, {"ä;文", "ä|文"},
            {"a;\"b", "a||b"}, // the quote is no field's, and what follows is a further one
            {"a,b", "a|,b", ','}, {"a,\"b\",;c", "a|,\"b|,;c", ','}, {"aäb", "a|äb", 0xE4}, {"a\tb", "a|b", '\t'},
            {"a^b", "", '^'}, {"a]b", "a|]b", ']'}, // no more than the pattern makes of them
        };
        for (const auto& row : rows) {
            const QStringList expected = fieldsByPattern(u(row.line), char(row.separator));
            QCOMPARE(expected.join(u("|")), u(row.fields));
            QCOMPARE(fieldsOf(u(row.line), row.separator, expected.size()), expected);
            EcoFile file;
            file.parseHeaderLine(u("#Separator %1").arg(row.separator, 0, 16));
            QCOMPARE(file.fieldCount(u(row.line)), expected.size());
            QCOMPARE(fieldsOf(u(row.line), row.separator, expected.size() + 1), QStringList());
        }
    }

    void scansLikeThePattern()
    {
        QRandomGenerator random(1);
        for (int round = testRounds(); round > 0; --round) {
            const int separator = round % 256;
            const auto mark = QString(QLatin1Char(char(separator)));
            const QString line = randomText(random,
                {mark, mark, mark, u(";"), u("\""), u("\""), u(" "), u("a"), u("b^"), u("]"), u("ä"), u("文"), u("\t")},
                12);
            const QStringList expected = fieldsByPattern(line, char(separator));
            QVERIFY2(fieldsOf(line, separator, expected.size()) == expected,
                qPrintable(u("%1 with separator %2").arg(line).arg(separator)));
        }
    }

    void header()
    {
        const auto headerWith = [](const char* line) {
            EcoFile file;
            for (const char* each : {"#ECO v e", "#Column c", line}) { file.parseHeaderLine(u(each)); }
            const EcoFile::Header& header = file.header();
            return u("%1|%2|%3|%4")
                .arg(header.version(), header.encoding(), QString::number(uchar(header.separator())),
                    header.columns().join(u(",")));
        };
        QCOMPARE(headerWith("#ECO 1.0 UTF-8;"), u("1.0|UTF-8|59|c"));
        QCOMPARE(headerWith("#ECO 1.0 UTF-8;;"), u("1.0|UTF-8;|59|c"));
        QCOMPARE(headerWith("#Separator 2C"), u("v|e|44|c"));
        QCOMPARE(headerWith("#Separator 0x1e4"), u("v|e|228|c"));
        QCOMPARE(headerWith("#Column c"), u("v|e|59|c,c"));
        for (const char* meaningless : {"#ECO 1.0", "#ECO  1.0 x", "#ECO 1.0 x y", "#ECO", "#eco 1 2", "#Separator",
                 "#Separator xy", "#Separator 2C ", "#Column", "#Column  a", "#Column a b", "# Column a", "Column a"}) {
            QCOMPARE(headerWith(meaningless), u("v|e|59|c"));
        }
    }

    void files()
    {
        const QTemporaryDir folder;
        const QString fileName = folder.filePath(u("table.eco"));
        // A byte-order mark, all kinds of line ends, a row before its columns, and no end of the last line.
        QVERIFY(writeFile(
            fileName, "\xEF\xBB\xBF#ECO 1.0 UTF-8;\r\nearly\r\n#Column id\n#Column name\r\n\r\n 1;x \r\n2;y;z\n3;y"));
        EcoFile file;
        QVERIFY(!file.parse(folder.path()) && !file.parse(QString()));
        QVERIFY(file.parse(fileName));
        QCOMPARE(file.header().version(), u("1.0"));
        QCOMPARE(file.rows().size(), 2);
        QCOMPARE(file.droppedLineCount(), 2);
        QCOMPARE(file.rows()[1][u("name")], u("y"));
        QVERIFY(file.parse(fileName)); // now of four columns, which no line has
        QCOMPARE(file.rows().size(), 2);
        QCOMPARE(file.droppedLineCount(), 4);
        QCOMPARE(file.header().columns().size(), 4);
        file.parseDataLine(u("1;x;3;y"));
        QCOMPARE(file.rows()[2].entryId(), quint16(3));
        QCOMPARE(file.rows()[2].length(), 2);
        QCOMPARE(file.rows()[2][u("id")], u("3")); // the later one of the columns of that name
    }

    void rowsAreValues()
    {
        EcoFile file;
        file.parseHeaderLine(u("#Column a"));
        for (int i = 0; i < 65537; ++i) { file.parseDataLine(u("x")); }
        QCOMPARE(file.rows()[65534].entryId(), quint16(65535));
        QCOMPARE(file.rows()[65535].entryId(), quint16(0));
        QCOMPARE(file.rows()[65536].entryId(), quint16(1));
        EcoFile::Row row = file.rows().first();
        QCOMPARE(qAsConst(row)[u("b")], QString());
        QCOMPARE(row.length(), 1);
        QString& kept = row[u("b")];
        row[u("c")] = row[u("d")] = u("z");
        row[u("a")] = row[u("b")] += u("y");
        QCOMPARE(row.length(), 4);
        QCOMPARE(qAsConst(row)[u("b")] + kept + qAsConst(row)[u("a")], u("yyy"));
        QCOMPARE(file.rows().first().length(), 1);
        QCOMPARE(EcoFile::Row().length(), 0);
    }
};

QTEST_APPLESS_MAIN(EcoFileTest)
#include "ecofiletest.moc"
