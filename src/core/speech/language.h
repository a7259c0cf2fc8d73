#pragma once

/**
 * @file
 * The languages of the speech components: one value per language, its codes, and what the engines
 * can do with it.
 *
 * Four code families are fixed: the ISO code ("de_DE": an ISO 639 language and an ISO 3166
 * country), the ISO name (the same but for Chinese and Japanese), and the three-letter pairs
 * ("deu-DEU", ISO 639-3 and ISO 3166 alpha-3) of the recogniser (ISO3) and of speech output (TTS
 * ISO3). They hold what the engines and data files expect, irregular codes included. Codes compare
 * byte for byte.
 *
 * Thread-safety: everything may be called from any thread, except the functions that read or write
 * the two tables an application fills: its string ids (updateLanguageIdToStringHash and the two
 * string conversions) and the GLS languages (setGlsLanguages, isGlsLanguage). Fill these before
 * other threads read them. Nothing is logged, and nothing fails but by the stated answer.
 */

#include <core/orvcore_export.h>

#include <QByteArray>
#include <QList>
#include <QMetaType>

/** @addtogroup speech
 * @{ */

class QDebug;

/** A language. Meta-type "Language", with "QList<Language>", registered when the library loads. */
enum Language : int
{
    NoLanguage = 0,
    German = 1,
    EnglishUk = 2,
    EnglishUs = 3,
    Spanish = 4,
    Italian = 5,
    French = 6,
    // 7 stays free: it belongs to no language
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

/** Regional variants of one language. */
enum LanguageGroup : int
{
    EnglishGroup = 0,
    SpanishGroup = 1,
    FrenchGroup = 2,
    ChineseGroup = 3, ///< Mandarin and Cantonese
    PortugueseGroup = 4,
    NoLanguageGroup = 255, ///< the only variant, or no language
};

/** @name Fixed codes
 * @{ */

/** The language of an ISO code; #InvalidLanguage for an unknown one. */
ORVCORE_EXPORT Language convertIsoToLanguageId(const QByteArray& isoCode);

/** The ISO code; as with the other codes, an empty array where the language has none. */
ORVCORE_EXPORT QByteArray convertLanguageIdToIso(const Language& language);

/** The ISO code, but "kt_JP" for Japanese and "zh_TW" or "zh_CN" for Mandarin and Cantonese. */
ORVCORE_EXPORT QByteArray convertLanguageIdToIsoName(const Language& language);

/** The code of the recogniser, which not every language has. */
ORVCORE_EXPORT QByteArray convertLanguageIdToIso3(const Language& language);

/** The ISO3 code where there is one; also known for most languages without. */
ORVCORE_EXPORT QByteArray convertTtsLanguageIdToIso3(const Language& language);

/** Knows the ISO3 codes, not the further ones of speech output; else #InvalidLanguage. */
ORVCORE_EXPORT Language convertIso3ToLanguageId(const QByteArray& iso3Code);
/** @} */

/** @name String ids
 * Ids of the application's own making, none until it sets them.
 * @{ */

/** The string id last set for @p language; empty when none was. */
ORVCORE_EXPORT QByteArray convertLanguageIdToString(const Language& language);

/**
 * The language whose string id is @p string; any of them when several share it.
 *
 * @return NoLanguage for an unknown string, unlike the fixed codes
 */
ORVCORE_EXPORT Language convertStringToLanguageId(const QByteArray& string);

/** Sets or replaces the string id of one language; an empty string is an id like any other. */
ORVCORE_EXPORT void updateLanguageIdToStringHash(
    const Language& language, const QByteArray& string);
/** @} */

/** @name Classification
 * What the product is configured for; it does not follow from the codes a language has. Values that
 * are no language have no group, and no engine supports or refuses them.
 * @{ */

/** Whether the natural-language-understanding service supports the language. */
ORVCORE_EXPORT bool isNluLanguage(const Language& language);

/** Whether speech output must refuse the language. */
ORVCORE_EXPORT bool isInvalidPrompterLanguage(const Language& language);

/** Whether the recogniser must refuse the language. */
ORVCORE_EXPORT bool isInvalidRecognizerLanguage(const Language& language);

/** Whether the list last given to setGlsLanguages() holds the language. */
ORVCORE_EXPORT bool isGlsLanguage(const Language& language);

/** Replaces the GLS languages, which are none until then. */
ORVCORE_EXPORT void setGlsLanguages(const QList<Language>& languages);

/** Whether the language is CantoneseHongKong or CantoneseChina. */
ORVCORE_EXPORT bool isCantoneseLanguage(const Language& language);

/** The variants that the language is one of; #NoLanguageGroup for most. */
ORVCORE_EXPORT LanguageGroup languageGroup(const Language& language);
/** @} */

/**
 * Writes the ISO code, or "Unknown" where there is none, as in: Language { "de_DE" }
 *
 * Leaves the stream in spacing mode, with a blank written.
 */
ORVCORE_EXPORT QDebug& operator<<(QDebug& stream, Language language);

/** For a temporary stream, where qDebug() << language would else print the number. */
inline QDebug& operator<<(QDebug&& stream, Language language)
{
    return stream << language;
}

/** @} */
