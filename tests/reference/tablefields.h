#pragma once

#include <support/helpers.h>

/**
 * @file
 * Reference implementation of how EcoFile splits a data line into fields:
 *
 *  1. A field is the next match of the pattern, without the white space around it.
 *  2. A leading semicolon, blank and quote are removed, one each in this order, then a trailing quote.
 */
namespace reference {

inline QStringList tableFields(const QString& line, char separator) {
    QRegExp pattern(u("((?:[^%1\"]|\"[^\"]*\"|^[%1])+)").arg(QLatin1Char(separator)));
    QStringList fields;
    for (int at = 0; (at = pattern.indexIn(line, at, QRegExp::CaretAtOffset)) >= 0; at += pattern.matchedLength()) {
        QString field = pattern.cap(1).trimmed();
        for (const char* opening : {";", " ", "\""}) { field = field.startsWith(u(opening)) ? field.mid(1) : field; }
        fields += field.endsWith(u("\"")) ? field.chopped(1) : field;
    }
    return fields;
}

} // namespace reference
