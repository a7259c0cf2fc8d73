#include "comparison.h"
#include "samples.h"

#include <core/parsers/ecofile.h>

#include <QFile>
#include <QTextStream>

#include <benchmark/benchmark.h>

namespace {

/** Reads separated values, with quotes, into lists of strings, in the plainest way. */
QList<QStringList> readPlainly(const QString& fileName) {
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

void addReading(int rowCount) {
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
    addComparison({"read table", std::to_string(rowCount) + " rows",
        [fileName] {
            EcoFile file;
            file.parse(fileName);
        },
        {{"plain reader", [fileName] { readPlainly(fileName); }, rowCount == 200'000 ? 0.55 : 0.65}},
        double(2 * rowCount + rowCount / 100 + 128), // two for each row; the rest to read the file
        "6 columns", double(rowCount),
        2.4 * 2 * double(content.size()) + 128 * 1024}); // as UTF-16; the rest to read the file
}

/** Reads the fields of @p rowCount rows of @p columnCount columns by their names. */
auto readWholeRows(int columnCount, int rowCount) {
    QStringList names;
    EcoFile file;
    for (int i = 0; i < columnCount; ++i) {
        names.append(QStringLiteral("column_%1").arg(i));
        file.parseHeaderLine(QLatin1String("#Column ") + names.last());
    }
    for (int i = 0; i < rowCount; ++i) {
        file.parseDataLine(QStringLiteral("some field;").repeated(columnCount).chopped(1));
    }
    return [file, names] {
        for (const EcoFile::Row& row : file.rows()) {
            for (const QString& name : names) { benchmark::DoNotOptimize(row[name]); }
        }
    };
}

} // namespace

void addTables() {
    for (const int rowCount : {2'000, 20'000, 200'000}) { addReading(rowCount); }
    addComparison({"whole row, for each column", "100 columns", readWholeRows(100, 60),
        {{"6 columns", readWholeRows(6, 1'000), 1.5}}, 6'000});
}
