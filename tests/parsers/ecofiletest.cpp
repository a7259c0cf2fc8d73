#include <core/parsers/ecofile.h>

#include <support/helpers.h>

namespace {

const struct {
    const char *name, *line;
    const char* fields; // joined by "|"
    int separator = ';';
} lines[] = {{"quotes and blanks", "a; \"b;c\" ;;d", "a|b;c||d"}, {"empty fields", "a;;b;", "a||b|"},
    {"empty first field", ";b", "b"}, {"one blank is removed", "a;  b", "a| b"},
    {"blanks around quotes", "a; \"x\" ", "a|x"}, {"quotes inside a field", "a\"b;c\"d;e", "a\"b;c\"d|e"},
    {"an unpaired quote splits", "a;\"b", "a||b"}, {"beyond ASCII", "ä;文", "ä|文"},
    {"other separators stay", "a,\"b\",;c", "a|,\"b|,;c", ','}, {"quotes as separators", "a\"b\"c", "a\"b\"c", '"'},
    {"three quotes as separators", "a\"b\"c\"d", "a\"b\"c|d", '"'}, {"backslash: an invalid pattern", "a\\b", "", '\\'},
    {"separator beyond ASCII", "aäb", "a|äb", 0xE4}, {"tab as separator", "a\tb", "a|b", '\t'},
    {"caret: an invalid pattern", "a^b", "", '^'}, {"bracket as separator", "a]b", "a|]b", ']'}};

/** The fields of a line in a table with @p count columns; none if the line is dropped. */
QStringList fieldsOf(const QString& line, int separator, int count) {
    EcoFile file;
    for (int i = 0; i < count; ++i) { file.parseHeaderLine(u("#Column %1").arg(i)); }
    for (const int each : {int('^'), separator}) { // "^" drops the lines
        file.parseHeaderLine(u("#Separator %1").arg(each, 0, 16));
        file.parseDataLine(line);
        file.parseDataLine(line);
    }
    QStringList fields;
    for (int i = 0; i < count && file.rows().size() == 2; ++i) { fields += file.rows().last()[QString::number(i)]; }
    return fields;
}

/** A text as UTF-16 or UTF-32: @p size is 2 or 4. */
QByteArray encoded(const QString& text, int size, bool isBigEndian) {
    const QVector<uint> units = size == 4 ? text.toUcs4() : QVector<uint>(text.utf16(), text.utf16() + text.size());
    QByteArray bytes;
    for (const uint unit : units) {
        for (int i = 0; i < size; ++i) { bytes += char(unit >> 8 * (isBigEndian ? size - 1 - i : i)); }
    }
    return bytes;
}

const QByteArray head = "\xEF\xBB\xBF#Column a\n";    // the byte order mark overrides the locale
const QByteArray block(16384 - head.size() - 1, 'x'); // with head, one byte short of Qt's block
const QString table = QChar(QChar::ByteOrderMark) + u("#Column a\n ä😀\n");
const struct {
    const char* name;
    QByteArray content;
    QString field = u("ä😀");
} encodedTables[] = {{"UTF-8", head + " \xC3\xA4\xF0\x9F\x98\x80\n"},
    {"broken UTF-8", head + "a\xE4 b\xC0\x80", u("a\uFFFD b\uFFFD\uFFFD")},
    {"a character is cut off at the end", head + "a\xE6\x96", u("a")},
    {"a broken character at the end of a block", head + block + "\xC3y\n", u(block) + u("\uFFFDy")},
    {"a character at the end of a block", head + block + "\xC3\xA4y\n", u(block) + u("äy")},
    {"UTF-16, little endian", encoded(table, 2, false)}, {"UTF-16, big endian", encoded(table, 2, true)},
    {"UTF-32, little endian", encoded(table, 4, false)}, {"UTF-32, big endian", encoded(table, 4, true)}};

/** Declarations, and the header after each: version, encoding, separator, columns. */
const struct {
    const char* name;
    const char* header = "v|e|59|c"; // the default: the line is ignored
} declarations[] = {{"#ECO 1.0 UTF-8;", "1.0|UTF-8|59|c"}, {"#ECO 1.0 UTF-8;;", "1.0|UTF-8;|59|c"},
    {"#Separator 2C", "v|e|44|c"}, {"#Separator 0x1e4", "v|e|228|c"}, {"#Column c", "v|e|59|c,c"}, {"#ECO 1.0"},
    {"#ECO  1.0 x"}, {"#ECO 1.0 x y"}, {"#ECO"}, {"#ECOX 1 2"}, {"#eco 1 2"}, {"x#ECO 1 2"}, {"#Separator"},
    {"#Separator xy"}, {"#Separator 2C "}, {"#Separatox 2C"}, {"#Column"}, {"#Column  a"}, {"#Column a b"},
    {"#Columx a"}, {"# Column a"}, {"Column a"}};

} // namespace

class EcoFileTest : public QObject {
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

    void header_data() { addRows(declarations); }
    void header() {
        const auto& row = currentRow(declarations);
        EcoFile file;
        for (const char* line : {"#ECO v e", "#Column c", row.name}) { file.parseHeaderLine(u(line)); }
        const EcoFile::Header& header = file.header();
        const QString separator = QString::number(uchar(header.separator()));
        const QStringList parts{header.version(), header.encoding(), separator, header.columns().join(u(","))};
        QCOMPARE(parts.join(u("|")), u(row.header));
    }

    void files() {
        const QTemporaryDir folder;
        const QString fileName = folder.filePath(u("table.eco"));
        // A byte-order mark, all kinds of line ends, a row and a blank line before the columns, no final line end.
        QVERIFY(writeFile(fileName,
            "\xEF\xBB\xBF#ECO 1.0 UTF-8;\r\nearly\r\n \r\n#Column id\n#Column name\r\n\r\n 1;x \r\n2;y;z\n3;y"));
        EcoFile file;
        QVERIFY(!file.parse(folder.path()) && !file.parse(QString()));
        QVERIFY(file.parse(fileName));
        QCOMPARE(file.header().version(), u("1.0"));
        QCOMPARE(file.rows().size(), 2);
        QCOMPARE(file.droppedLineCount(), 2);
        QCOMPARE(file.rows()[1][u("name")], u("y"));
        QVERIFY(file.parse(fileName)); // appends the columns again: no line has four fields
        QCOMPARE(file.rows().size(), 2);
        QCOMPARE(file.droppedLineCount(), 4);
        QCOMPARE(file.header().columns().size(), 4);
        file.parseDataLine(u("1;x;3;y"));
        QCOMPARE(file.rows()[2].entryId(), quint16(3));
        QCOMPARE(file.rows()[2].length(), 2);
        QCOMPARE(file.rows()[2][u("id")], u("3")); // the last column of that name
    }

    void encodings_data() { addRows(encodedTables); }
    void encodings() {
        const auto& row = currentRow(encodedTables);
        const QTemporaryDir folder;
        const QString fileName = folder.filePath(u("table.eco"));
        EcoFile file;
        QVERIFY(writeFile(fileName, row.content) && file.parse(fileName));
        QCOMPARE(file.rows().size(), 1);
        QCOMPARE(file.rows()[0][u("a")], row.field);
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
