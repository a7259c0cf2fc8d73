#pragma once

/**
 * @file
 * The languages of the speech components: one value per language, its codes, and the engines that
 * support it.
 *
 * Four code families are fixed:
 * - ISO code, such as "de_DE": an ISO 639 language and an ISO 3166 country
 * - ISO name: the ISO code, except for Chinese and Japanese
 * - ISO3 code of the recogniser, such as "deu-DEU": ISO 639-3 and ISO 3166 alpha-3
 * - TTS ISO3 code of speech output: the same form, for more languages
 *
 * The engines and data files expect exactly these codes, so some are irregular. Codes compare byte
 * for byte.
 *
 * Thread-safety: any thread may call any function, except those that read or write the two tables
 * that the application fills: string ids (updateLanguageIdToStringHash and the two string
 * conversions) and GLS languages (setGlsLanguages, isGlsLanguage). Fill these before other threads
 * read them. No function logs.
 */

#include <core/orvcore_export.h>

#include <QByteArray>
#include <QList>
#include <QMetaType>

/** @addtogroup speech
 * @{ */

class QDebug;
class QString;

/** A language. The library registers the meta-types "Language" and "QList<Language>" at load. */
enum Language : int
{
    NoLanguage = 0,
    German = 1,
    EnglishUk = 2,
    EnglishUs = 3,
    Spanish = 4,
    Italian = 5,
    French = 6,
    // 7 must stay unused
    Dutch = 8,
    Arabic = 9,
    MandarinTaiwan = 10,
    MandarinChina = 11,
    Korean = 12,
    Japanese = 13,
    Russian = 14,
    FrenchCanada = 15,
    SpanishUs = 16,
    Portuguese = 17,
    Polish = 18,
    Greek = 19,
    Turkish = 20,
    Hungarian = 21,
    Romanian = 22,
    Swedish = 23,
    PortugueseBrazil = 24,
    CantoneseHongKong = 25,
    CantoneseChina = 26,
    Slovak = 27,
    Czech = 28,
    Slovenian = 29,
    Danish = 30,
    Norwegian = 31,
    Finnish = 32,
    Indonesian = 33,
    Thai = 34,
    InvalidLanguage = 255, ///< the answer for an unknown ISO or ISO3 code
};

Q_DECLARE_METATYPE(Language)

/** A group of regional variants of one language. */
enum LanguageGroup : int
{
    EnglishGroup = 0,
    SpanishGroup = 1,
    FrenchGroup = 2,
    ChineseGroup = 3, ///< Mandarin and Cantonese
    PortugueseGroup = 4,
    NoLanguageGroup = 255, ///< a language without variants, or no language
};

/** @name Fixed codes
 * @{ */

/** The language of an ISO code; #InvalidLanguage for an unknown one. */
ORVCORE_EXPORT Language convertIsoToLanguageId(const QByteArray& isoCode);

/** The ISO code. This and the other codes are empty if the language has none. */
ORVCORE_EXPORT QByteArray convertLanguageIdToIso(const Language& language);

/** The ISO code, except "kt_JP" for Japanese, "zh_TW" or "zh_CN" for Mandarin and Cantonese. */
ORVCORE_EXPORT QByteArray convertLanguageIdToIsoName(const Language& language);

/** The ISO3 code, which only some languages have. */
ORVCORE_EXPORT QByteArray convertLanguageIdToIso3(const Language& language);

/** The TTS ISO3 code: equal to the ISO3 code if there is one; exists for most other languages. */
ORVCORE_EXPORT QByteArray convertTtsLanguageIdToIso3(const Language& language);

/** The language of an ISO3 code; #InvalidLanguage for others, even if they are TTS ISO3 codes. */
ORVCORE_EXPORT Language convertIso3ToLanguageId(const QByteArray& iso3Code);
/** @} */

/**
 * The name of the language's enumerator, such as "EnglishUk"; null for #InvalidLanguage and for a
 * value without an enumerator.
 */
ORVCORE_EXPORT QString languageName(const Language& language);

/** @name String ids
 * Ids that the application defines; there are none until it sets them.
 * @{ */

/** The string id last set for @p language; empty if there is none. */
ORVCORE_EXPORT QByteArray convertLanguageIdToString(const Language& language);

/**
 * The language whose string id is @p string; any one of them if several share it.
 *
 * @return NoLanguage for an unknown string; the fixed codes give #InvalidLanguage
 */
ORVCORE_EXPORT Language convertStringToLanguageId(const QByteArray& string);

/** Sets or replaces the string id of one language; an empty string is a valid id. */
ORVCORE_EXPORT void updateLanguageIdToStringHash(
    const Language& language, const QByteArray& string);
/** @} */

/** @name Classification
 * The product's configuration, which does not depend on the codes of a language. Values that are
 * not a language have no group, and no engine supports or refuses them.
 * @{ */

/** Whether the natural-language-understanding service supports the language. */
ORVCORE_EXPORT bool isNluLanguage(const Language& language);

/** Whether speech output must refuse the language. */
ORVCORE_EXPORT bool isInvalidPrompterLanguage(const Language& language);

/** Whether the recogniser must refuse the language. */
ORVCORE_EXPORT bool isInvalidRecognizerLanguage(const Language& language);

/** Whether the list last passed to setGlsLanguages() contains the language. */
ORVCORE_EXPORT bool isGlsLanguage(const Language& language);

/** Replaces the list of GLS languages, which is empty at first. */
ORVCORE_EXPORT void setGlsLanguages(const QList<Language>& languages);

/** Whether the language is CantoneseHongKong or CantoneseChina. */
ORVCORE_EXPORT bool isCantoneseLanguage(const Language& language);

/** The group that the language belongs to; #NoLanguageGroup for most. */
ORVCORE_EXPORT LanguageGroup languageGroup(const Language& language);
/** @} */

/**
 * Prints the ISO code, or "Unknown" if there is none, as in: Language { "de_DE" }
 *
 * Writes a blank at the end and leaves the stream in spacing mode.
 */
ORVCORE_EXPORT QDebug& operator<<(QDebug& stream, Language language);

/** For a temporary stream; without it, qDebug() << language would print the number. */
inline QDebug& operator<<(QDebug&& stream, Language language)
{
    return stream << language;
}

/** @} */
