#include "fuzz.h"

#include <support/plainways.h>

#include <core/parsers/ecofile.h>

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, std::size_t size)
{
    const FuzzInput input(data, size);
    EcoFile file;
    for (const QString& line : input.text().split(QLatin1Char('\n'))) {
        const QStringList fields = fieldsByPattern(line, char(input.variant));
        require(fieldsOf(line, input.variant, fields.size()) == fields, "lines are scanned as by the pattern");
        require(fieldsOf(line, input.variant, fields.size() + 1).isEmpty(), "lines of another length are dropped");
        file.parseHeaderLine(line);
        file.parseDataLine(line);
    }
    for (EcoFile::Row row : file.rows()) {
        for (const QString& column : file.header().columns()) { row[column] += QLatin1Char('x'); }
    }
    return 0;
}
