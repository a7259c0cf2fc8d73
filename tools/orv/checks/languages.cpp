#include "checks/languages.h"

namespace {

QStringList textsOfAll(QString (*textOf)(const Language&))
{
    QStringList texts;
    const QVector<Language> languages = allLanguages();
    for (const Language language : languages) {
        texts += textOf(language);
    }
    return texts;
}

} // namespace

QVector<Language> allLanguages()
{
    constexpr int valueCount = 256; // languages have the values of one byte
    QVector<Language> languages;
    for (int value = 0; value < valueCount; ++value) {
        if (!codeOf(Language(value)).isEmpty()) {
            languages.append(Language(value));
        }
    }
    return languages;
}

QString codeOf(const Language& language)
{
    return QString::fromLatin1(convertLanguageIdToIso(language));
}

QStringList languageCodes()
{
    return textsOfAll(codeOf);
}

QString unknownLanguage(const QString& code)
{
    constexpr int slip = 3; // characters; a more distant name is a different one
    const QStringList names = textsOfAll(languageName);
    const QStringList codes = languageCodes();
    const QString name = nearest(code, names, slip);
    return name.isNull()
               ? unknown("language", code, codes)
               : unknown("language", code, {})
                     + u", did you mean \"%1\" (%2)?"_s.arg(codes[names.indexOf(name)], name);
}
