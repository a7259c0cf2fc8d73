#include "comparison.h"
#include "samples.h"

#include <core/parsers/ecofile.h>

#include <QFile>
#include <QTextStream>

namespace {

/** A plain reader of separated values, with quotes, to lists of strings. */
QList<QStringList> readPlainly(const QString& fileName)
{
    QFile file(fileName);
    file.open(QIODevice::ReadOnly);
    QTextStream stream(&file);
    QList<QStringList> rows;
    QString line;
    while (stream.readLineInto(&line)) {
        if (line.isEmpty() || line[0] == QLatin1Char('#')) { continue; }
        QStringList fields;
        int begin = 0;
        bool isQuoted = false;
        for (int i = 0; i <= line.size(); ++i) {
            if (i == line.size() || (line[i] == QLatin1Char(';') && !isQuoted)) {
                const bool hasQuotes = i - begin >= 2 && line[begin] == QLatin1Char('"');
                fields.append(hasQuotes ? line.mid(begin + 1, i - begin - 2) : line.mid(begin, i - begin));
                begin = i + 1;
            } else if (line[i] == QLatin1Char('"')) {
                isQuoted = !isQuoted;
            }
        }
        rows.append(fields);
    }
    return rows;
}

} // namespace

void addTables()
{
    for (const int rowCount : {2'000, 20'000, 200'000}) {
        QByteArray content = "#ECO 1.0 UTF-8;\n";
        for (const char* column : {"id", "name", "street", "city", "phone", "hours"}) {
            content += QByteArray("#Column ") + column + '\n';
        }
        for (int i = 0; i < rowCount; ++i) {
            content += QByteArray::number(i) + ";\"Station " + QByteArray::number(i * 7)
                       + "\";Main Street 12;\"Springfield; North\";+1 555 0100;Mo-Fr 8-18\n";
        }
        const QString fileName = temporaryPath(QStringLiteral("%1.eco").arg(rowCount));
        writeFile(fileName, content);
        Comparison& added = addComparison({"read table", std::to_string(rowCount) + " rows", 1.3, timed([fileName] {
                                               EcoFile file;
                                               file.parse(fileName);
                                           }),
            {{"plain reader", timed([fileName] { readPlainly(fileName); })}}});
        added.series = "6 columns";
        added.work = rowCount;
        added.heapLimit = 4 * 2 * long(content.size()); // as UTF-16
    }
}
