#include "commands/commands.h"
#include "shell/failure.h"
#include "shell/input.h"
#include "shell/output.h"
#include "shell/tablereader.h"
#include "shell/text.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>

namespace {

constexpr int shownLineNumbers = 5;

void reportDropped(const QString& fileName, const QVector<int>& lines)
{
    if (lines.isEmpty()) {
        return;
    }
    QStringList numbers;
    const QVector<int> shownLines = lines.mid(0, shownLineNumbers);
    for (const int line : shownLines) {
        numbers.append(QString::number(line));
    }
    if (lines.size() > shownLineNumbers) {
        numbers.append(u"…"_s);
    }
    printError(u"%1: lines dropped: %2 (%3)"_s.arg(
        fileName, QString::number(lines.size()), numbers.join(u", "_s)));
}

QString csvLine(QStringList cells)
{
    static const QRegularExpression needsQuotes(u"[,\"\r\n]"_s);
    for (QString& cell : cells) {
        if (cell.contains(needsQuotes)) {
            cell.replace(u'"', u"\"\""_s);
            cell = u'"' + cell + u'"';
        }
    }
    return cells.join(u',') + u'\n';
}

QStringList cellsOf(const EcoFile::Row& row, const QStringList& columns)
{
    QStringList cells;
    for (const QString& column : columns) {
        cells.append(row[column]);
    }
    return cells;
}

void printAsJson(const EcoFile& file, const QStringList& columns)
{
    const EcoFile::Header& header = file.header();
    printJson({{u"version"_s, header.version()}, {u"encoding"_s, header.encoding()},
        {u"separator"_s, QString(QLatin1Char(header.separator()))},
        {u"columns"_s, QJsonArray::fromStringList(columns)}});
    for (const EcoFile::Row& row : file.rows()) {
        QJsonObject fields;
        for (const QString& column : columns) {
            fields.insert(column, row[column]);
        }
        printJson({{u"entryId"_s, row.entryId()}, {u"fields"_s, fields}});
    }
}

void printForPeople(const EcoFile& file, const QStringList& columns)
{
    const EcoFile::Header& header = file.header();
    print(u"version %1, encoding %2, separator \"%3\"\n"_s.arg(
        header.version().isEmpty() ? u"-"_s : header.version(),
        header.encoding().isEmpty() ? u"-"_s : header.encoding(),
        onOneLine(QString(QLatin1Char(header.separator())))));
    QVector<QStringList> rows{QStringList(u"ENTRY"_s) + columns};
    for (const EcoFile::Row& row : file.rows()) {
        QStringList cells{QString::number(row.entryId())};
        const QStringList texts = cellsOf(row, columns);
        for (const QString& text : texts) {
            cells.append(onOneLine(text));
        }
        rows.append(cells);
    }
    printTable(rows);
}

int run(const CommandLine& commandLine)
{
    if (commandLine.arguments().isEmpty()) {
        throw Failure{u"a table file is needed"_s};
    }
    if (commandLine.isSet("json") && commandLine.isSet("csv")) {
        throw Failure{u"either --json or --csv"_s};
    }
    QString fileName = commandLine.fileName();
    QFile input;
    openInput(input, fileName);
    QVector<int> droppedLines;
    const EcoFile table = readTable(input, [&droppedLines](const TableLine& line, const EcoFile&) {
        if (line.isDropped) {
            droppedLines.append(line.number);
        }
    });
    QStringList columns = table.header().columns();
    columns.removeDuplicates(); // the last field of a name counts
    if (columns.isEmpty() && !droppedLines.isEmpty()) {
        throw Failure{u"%1: not a table file: no line declares a column"_s.arg(fileName)};
    }
    if (commandLine.isSet("json")) {
        printAsJson(table, columns);
    } else if (commandLine.isSet("csv")) {
        print(csvLine(columns));
        for (const EcoFile::Row& row : table.rows()) {
            print(csvLine(cellsOf(row, columns)));
        }
    } else {
        printForPeople(table, columns);
    }
    reportDropped(fileName, droppedLines);
    return 0;
}

} // namespace

Command tableCommand()
{
    return {"table", "shows the header and rows of table files",
        u"Shows an \"#ECO\" table file: its header and its rows. Lines that the "
        "library\ndrops are named on standard error."_s,
        {{"file", "FILE", "A table file; - for standard input."}},
        {{"json", "Writes the header and each row as a JSON object."},
            {"csv", "Writes the column names and the rows as comma-separated values."}},
        {u"stations.eco"_s, u"--csv stations.eco > stations.csv"_s}, run, 1};
}
