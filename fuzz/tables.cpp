#include "fuzz.h"

#include <reference/tablefields.h>

#include <core/parsers/ecofile.h>

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, std::size_t size) {
    const FuzzInput input(data, size);
    EcoFile whole;
    for (const QString& line : input.text.split(QLatin1Char('\n'))) {
        const QStringList expected = reference::tableFields(line, char(input.variant));
        EcoFile file;
        file.parseHeaderLine(u("#Separator %1").arg(input.variant, 0, 16));
        for (int i = 0; i < expected.size(); ++i) { file.parseHeaderLine(u("#Column %1").arg(i)); }
        file.parseDataLine(line);
        QStringList fields;
        for (int i = 0; i < expected.size(); ++i) { fields += file.rows().value(0)[QString::number(i)]; }
        require(fields == expected);
        whole.parseHeaderLine(line); // also lines that no rule is for
        whole.parseDataLine(line);
    }
    return 0;
}
