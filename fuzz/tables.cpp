#include "fuzz.h"

#include <reference/tablefields.h>

#include <core/parsers/ecofile.h>

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, std::size_t size) {
    const FuzzInput input(data, size);
    EcoFile whole;
    for (const QString& line : input.text().split(QLatin1Char('\n'))) {
        const QStringList fields = reference::tableFields(line, char(input.variant));
        EcoFile file;
        file.parseHeaderLine(QStringLiteral("#Separator %1").arg(input.variant, 0, 16));
        for (int i = 0; i < fields.size(); ++i) { file.parseHeaderLine(QStringLiteral("#Column %1").arg(i)); }
        file.parseDataLine(line);
        require(file.rows().size() == 1, "a line with a field for each column is a row");
        for (int i = 0; i < fields.size(); ++i) {
            require(file.rows().first()[QString::number(i)] == fields[i], "lines are scanned as by the pattern");
        }
        whole.parseHeaderLine(line);
        whole.parseDataLine(line);
    }
    for (EcoFile::Row row : whole.rows()) {
        for (const QString& column : whole.header().columns()) { row[column] += QLatin1Char('x'); }
    }
    return 0;
}
