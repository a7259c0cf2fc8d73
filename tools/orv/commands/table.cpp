#include "commands/commands.h"
#include "shell/failure.h"
#include "shell/input.h"
#include "shell/output.h"
#include "shell/tablereader.h"

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
        numbers.append(QStringLiteral("…"));
    }
    printError(
        QStringLiteral("%1: lines dropped: %2 (%3)")
            .arg(fileName, QString::number(lines.size()), numbers.join(QStringLiteral(", "))));
}

QString csvLine(QStringList cells)
{
    static const QRegularExpression needsQuotes(QStringLiteral("[,\"\r\n]"));
    for (QString& cell : cells) {
        if (cell.contains(needsQuotes)) {
            cell.replace(QLatin1Char('"'), QLatin1String("\"\""));
            cell = QLatin1Char('"') + cell + QLatin1Char('"');
        }
    }
    return cells.join(QLatin1Char(',')) + QLatin1Char('\n');
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
    printJson({{QStringLiteral("version"), header.version()},
        {QStringLiteral("encoding"), header.encoding()},
        {QStringLiteral("separator"), QString(QLatin1Char(header.separator()))},
        {QStringLiteral("columns"), QJsonArray::fromStringList(columns)}});
    for (const EcoFile::Row& row : file.rows()) {
        QJsonObject fields;
        for (const QString& column : columns) {
            fields.insert(column, row[column]);
        }
        printJson({{QStringLiteral("entryId"), row.entryId()}, {QStringLiteral("fields"), fields}});
    }
}

void printForPeople(const EcoFile& file, const QStringList& columns)
{
    const EcoFile::Header& header = file.header();
    print(QStringLiteral("version %1, encoding %2, separator \"%3\"\n")
              .arg(header.version().isEmpty() ? QStringLiteral("-") : header.version(),
                  header.encoding().isEmpty() ? QStringLiteral("-") : header.encoding(),
                  onOneLine(QString(QLatin1Char(header.separator())))));
    QVector<QStringList> rows{QStringList(QStringLiteral("ENTRY")) + columns};
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
        throw Failure{QStringLiteral("a table file is needed")};
    }
    if (commandLine.isSet("json") && commandLine.isSet("csv")) {
        throw Failure{QStringLiteral("either --json or --csv")};
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
        throw Failure{
            QStringLiteral("%1: not a table file: no line declares a column").arg(fileName)};
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
        QStringLiteral("Shows an \"#ECO\" table file: its header and its rows. Lines that the "
                       "library\ndrops are named on standard error."),
        {{"file", "FILE", "A table file; - for standard input."}},
        {{"json", "Writes the header and each row as a JSON object."},
            {"csv", "Writes the column names and the rows as comma-separated values."}},
        {QStringLiteral("stations.eco"), QStringLiteral("--csv stations.eco > stations.csv")}, run,
        1};
}
