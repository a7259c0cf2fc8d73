#include <core/parsers/ecofile.h>

#include <support/helpers.h>

namespace {

const struct {
    const char *name, *line;
    const char* fields; // joined by "|"
    int separator = ';';
} lines[] = {{"quotes and blanks", "a; \"b;c\" ;;d", "a|b;c||d"}, {"empty", "a;;b;", "a||b|"},
    {"first is empty", ";b", "b"}, {"one blank goes", "a;  b", "a| b"}, {"blanks outside", "a; \"x\" ", "a|x"},
    {"quotes inside", "a\"b;c\"d;e", "a\"b;c\"d|e"}, {"a quote alone parts fields", "a;\"b", "a||b"},
    {"beyond ASCII", "ä;文", "ä|文"}, {"other separators stay", "a,\"b\",;c", "a|,\"b|,;c", ','},
    {"a quote separates", "a\"b\"c", "a\"b\"c", '"'}, {"one of three quotes does", "a\"b\"c\"d", "a\"b\"c|d", '"'},
    {"a backslash, as the pattern has it", "a\\b", "", '\\'}, {"a byte beyond ASCII", "aäb", "a|äb", 0xE4},
    {"white space", "a\tb", "a|b", '\t'}, {"a caret, as the pattern has it", "a^b", "", '^'},
    {"a bracket", "a]b", "a|]b", ']'}};

/** The fields of a line, for which that many columns are declared; null when the line is dropped. */
QStringList fieldsOf(const QString& line, int separator, int count) {
    EcoFile file;
    for (int i = 0; i < count; ++i) { file.parseHeaderLine(u("#Column %1").arg(i)); }
    for (const int each : {int('^'), separator}) { // a line has no fields with the former
        file.parseHeaderLine(u("#Separator %1").arg(each, 0, 16));
        file.parseDataLine(line);
        file.parseDataLine(line);
    }
    QStringList fields;
    for (int i = 0; i < count && file.rows().size() == 2; ++i) { fields += file.rows().last()[QString::number(i)]; }
    return fields;
}

QByteArray bytesOf(uint unit, int size, bool isBigEndian) {
    QByteArray bytes;
    for (int i = 0; i < size; ++i) { bytes += char(unit >> 8 * (isBigEndian ? size - 1 - i : i)); }
    return bytes;
}

} // namespace

class EcoFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fields_data() { addRows(lines); }
    void fields() {
        const auto& row = currentRow(lines);
        const QString line = u(row.line);
        const QStringList expected = *row.fields == 0 ? QStringList() : u(row.fields).split(QLatin1Char('|'));
        const int count = int(expected.size());
        QCOMPARE(fieldsOf(line, row.separator, count), expected);
        QCOMPARE(fieldsOf(line, row.separator, count + 1), QStringList());
        EcoFile file;
        file.parseHeaderLine(u("#Separator %1").arg(row.separator, 0, 16));
        QCOMPARE(file.fieldCount(line), count);
    }

    void header_data() {
        QTest::addColumn<QString>("header"); // version, encoding, separator, columns

        QTest::newRow("#ECO 1.0 UTF-8;") << "1.0|UTF-8|59|c";
        QTest::newRow("#ECO 1.0 UTF-8;;") << "1.0|UTF-8;|59|c";
        QTest::newRow("#Separator 2C") << "v|e|44|c";
        QTest::newRow("#Separator 0x1e4") << "v|e|228|c";
        QTest::newRow("#Column c") << "v|e|59|c,c";
        for (const char* meaningless : {"#ECO 1.0", "#ECO  1.0 x", "#ECO 1.0 x y", "#ECO", "#ECOX 1 2", "#eco 1 2",
                 "x#ECO 1 2", "#Separator", "#Separator xy", "#Separator 2C ", "#Separatox 2C", "#Column", "#Column  a",
                 "#Column a b", "#Columx a", "# Column a", "Column a"}) {
            QTest::newRow(meaningless) << "v|e|59|c";
        }
    }
    void header() {
        EcoFile file;
        for (const char* line : {"#ECO v e", "#Column c", QTest::currentDataTag()}) { file.parseHeaderLine(u(line)); }
        const EcoFile::Header& header = file.header();
        QTEST(u("%1|%2|%3|%4")
                  .arg(header.version(), header.encoding(), QString::number(uchar(header.separator())),
                      header.columns().join(u(","))),
            "header");
    }

    void files() {
        const QTemporaryDir folder;
        const QString fileName = folder.filePath(u("table.eco"));
        // A byte-order mark, all kinds of line ends, a row and a blank line before the columns, and no end of the last.
        QVERIFY(writeFile(fileName,
            "\xEF\xBB\xBF#ECO 1.0 UTF-8;\r\nearly\r\n \r\n#Column id\n#Column name\r\n\r\n 1;x \r\n2;y;z\n3;y"));
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

    void encodings_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("field");

        const QByteArray head = "\xEF\xBB\xBF#Column a\n"; // with a byte order mark, so that the locale does not count
        QTest::newRow("UTF-8") << head + " \xC3\xA4\xF0\x9F\x98\x80\n"
                               << "ä😀";
        QTest::newRow("broken UTF-8") << head + "a\xE4 b\xC0\x80"
                                      << "a\uFFFD b\uFFFD\uFFFD";
        QTest::newRow("a character is cut off at the end") << head + "a\xE6\x96"
                                                           << "a";
        const QByteArray block(16384 - head.size() - 1, 'x'); // Qt reads such blocks
        QTest::newRow("a broken character at the end of a block") << head + block + "\xC3y\n"
                                                                  << u(block) + u("\uFFFDy");
        QTest::newRow("a character at the end of a block") << head + block + "\xC3\xA4y\n" << u(block) + u("äy");
        const QString text = QChar(QChar::ByteOrderMark) + u("#Column a\n ä😀\n");
        for (const bool isBigEndian : {false, true}) {
            QByteArray narrow;
            for (const QChar unit : text) { narrow += bytesOf(unit.unicode(), 2, isBigEndian); }
            QTest::addRow("UTF-16, %s", isBigEndian ? "big endian" : "little endian") << narrow << "ä😀";
            QByteArray wide;
            for (const uint unit : text.toUcs4()) { wide += bytesOf(unit, 4, isBigEndian); }
            QTest::addRow("UTF-32, %s", isBigEndian ? "big endian" : "little endian") << wide << "ä😀";
        }
    }
    void encodings() {
        QFETCH(QByteArray, content);
        const QTemporaryDir folder;
        const QString fileName = folder.filePath(u("table.eco"));
        EcoFile file;
        QVERIFY(writeFile(fileName, content) && file.parse(fileName));
        QCOMPARE(file.rows().size(), 1);
        QTEST(file.rows()[0][u("a")], "field");
    }

    void rowsAreValues() {
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
        QCOMPARE(qAsConst(row)[u("a")], u("x"));
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
