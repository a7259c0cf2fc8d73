#include "checks/table.h"
#include "commands/commands.h"

namespace {

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

void printCsv(const EcoFile& table, const QStringList& columns)
{
    print(csvLine(columns));
    for (const EcoFile::Row& row : table.rows()) {
        QStringList cells;
        for (const QString& column : columns) {
            cells += row[column];
        }
        print(csvLine(cells));
    }
}

void printRows(bool isJson, const EcoFile& table, const QStringList& columns)
{
    const EcoFile::Header& header = table.header();
    const auto orDash = [](const QString& text) { return text.isEmpty() ? u"-"_s : text; };
    printRecord({{"version", header.version()}, {"encoding", header.encoding()},
        {nullptr, orDash(header.version()), "version %1, "},
        {nullptr, orDash(header.encoding()), "encoding %1, "},
        {"separator", QString(QLatin1Char(header.separator())), "separator \"%1\"\n"},
        {"columns", columns}});
    if (table.rows().isEmpty() && !isJson) {
        print((QStringList(u"ENTRY"_s) + columns).join(u"  "_s) + u'\n');
    }
    QMap<QString, QByteArray> headings; // by column
    for (const QString& column : columns) {
        headings[column] = column.toUtf8();
    }
    Listing listing;
    for (const EcoFile::Row& row : table.rows()) {
        QVariantMap fields;
        Record record{{"entryId", row.entryId(), "ENTRY"}};
        for (const QString& column : columns) {
            if (isJson) {
                fields[column] = row[column];
            } else {
                record += {nullptr, row[column], headings[column].constData()};
            }
        }
        listing.add(record + Record{{"fields", fields}});
    }
    listing.finish();
}

void run(const CommandLine& commandLine)
{
    const bool isCsv = commandLine.isSet(u"csv"_s);
    const bool isJson = commandLine.isSet(u"json"_s);
    failIf(commandLine.positionalArguments().isEmpty(), u"a table file is needed"_s);
    failIf(isJson && isCsv, u"either --json or --csv"_s);
    Input input(commandLine.fileName());
    QStringList droppedLines;
    const EcoFile table =
        readTable(input.readContent(), [&droppedLines](const TableLine& line, const EcoFile&) {
            if (line.isDropped) {
                droppedLines += QString::number(line.place.line);
            }
        });
    QStringList columns = table.header().columns();
    columns.removeDuplicates(); // the last field of a column counts
    failIf(columns.isEmpty() && !droppedLines.isEmpty(),
        u"%1: not a table file: no line declares a column"_s.arg(input.name));
    if (isCsv) {
        printCsv(table, columns);
    } else {
        printRows(isJson, table, columns);
    }
    const int count = int(droppedLines.size());
    if (count > 0) {
        constexpr int mostShown = 5;
        printError(u"%1: lines dropped: %2 (%3%4)"_s.arg(input.name, QString::number(count),
            droppedLines.mid(0, mostShown).join(u", "_s),
            count > mostShown ? u", …"_s : QString()));
    }
}

} // namespace

const Command tableCommand = {"table", "shows the header and rows of table files",
    u"Shows the header and the rows of an \"#ECO\" table file. Lines that the library\n"
    "drops are listed on standard error."_s,
    {{"file", "FILE", "A table file, or - for standard input."}},
    {jsonOption, {"csv", "Writes the column names and the rows as comma-separated values."}},
    {u"stations.eco"_s, u"--csv stations.eco > stations.csv"_s}, run, 1};
