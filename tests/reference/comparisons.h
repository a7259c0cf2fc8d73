#pragma once

#include <reference/prompts.h>
#include <reference/sentences.h>
#include <reference/tablefields.h>
#include <support/described.h>

#include <core/parsers/ecofile.h>
#include <core/parsers/sentencetokenizer.h>

/**
 * @file
 * Each function compares the library with a reference implementation, on one text.
 */
namespace reference {

inline bool hasSamePrompt(const QString& text, PromptContext context, const QHash<QString, QString>& sounds) {
    return described(PromptData::parse(text, context)) == described(prompt(text, context, sounds));
}

inline bool hasSameSentences(const QString& text, Language language) {
    return SentenceTokenizer::split(text, language) == sentences(text, language);
}

inline bool hasSameFields(const QString& line, int separator) {
    const QStringList expected = tableFields(line, char(separator));
    EcoFile file;
    file.parseHeaderLine(u("#Separator %1").arg(separator, 0, 16));
    for (int i = 0; i < expected.size(); ++i) { file.parseHeaderLine(u("#Column %1").arg(i)); }
    file.parseDataLine(line);
    QStringList fields;
    for (int i = 0; i < expected.size(); ++i) { fields += file.rows().value(0)[QString::number(i)]; }
    return fields == expected && file.fieldCount(line) == expected.size();
}

} // namespace reference
