#include "shell/languages.h"
#include "shell/text.h"

#include "shell/words.h"

QVector<Language> allLanguages()
{
    constexpr int valueCount = 256; // languages have the values of one byte
    QVector<Language> languages;
    for (int value = 0; value < valueCount; ++value) {
        if (!convertLanguageIdToIso(Language(value)).isEmpty()) {
            languages.append(Language(value));
        }
    }
    return languages;
}

QStringList languageCodes()
{
    QStringList codes;
    const QVector<Language> languages = allLanguages();
    for (const Language language : languages) {
        codes += QString::fromLatin1(convertLanguageIdToIso(language));
    }
    return codes;
}

QString unknownLanguage(const QString& code)
{
    constexpr int slip = 3; // characters; further away it is another name
    QStringList names;
    const QVector<Language> languages = allLanguages();
    for (const Language language : languages) {
        names += languageName(language);
    }
    const QStringList codes = languageCodes();
    const int named = names.indexOf(nearest(code, names, slip));
    return named >= 0 ? unknown("language", code, {})
                            + u", did you mean \"%1\" (%2)?"_s.arg(codes[named], names[named])
                      : unknown("language", code, codes);
}
