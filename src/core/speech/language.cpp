#include <core/speech/language.h>

#include <QDebug>
#include <QHash>

#include <cstring>
#include <iterator>

namespace {

using Size = QByteArray::size_type;

/** Static bytes: a byte array made from them neither allocates nor counts references. */
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
struct StaticBytes
{
    constexpr explicit StaticBytes(Size size)
        : length(size)
    {}

    constexpr Size size() const
    {
        return length;
    }

    QByteArray toByteArray() const
    {
        return length == 0 ? QByteArray() : QByteArray::fromRawData(data, length);
    }

    Size length;
    char data[8] = {};
};
#else
struct StaticBytes : QStaticByteArrayData<7>
{
    constexpr explicit StaticBytes(Size size)
        : QStaticByteArrayData{Q_STATIC_BYTE_ARRAY_DATA_HEADER_INITIALIZER(size), {}}
    {}

    constexpr Size size() const
    {
        return ba.size;
    }

    QByteArray toByteArray() const // fromRawData() would allocate
    {
        return ba.size == 0 ? QByteArray() : QByteArray(QByteArrayDataPtr{data_ptr()});
    }
};
#endif

struct Code : StaticBytes
{
    // Implicit, so that rows can hold plain literals.
    template <int literalSize>
    constexpr Code(const char (&code)[literalSize])
        : StaticBytes(literalSize - 1)
    {
        static_assert(literalSize <= sizeof data, "the code and its final NUL fit");
        for (int i = 0; i < literalSize; ++i) {
            data[i] = code[i];
        }
    }

    bool operator==(const QByteArray& code) const
    {
        return size() == code.size() && std::memcmp(data, code.constData(), size_t(size())) == 0;
    }
};

enum EngineSupport : quint8
{
    Standard = 0,
    Nlu = 1,          // natural-language understanding supports it
    NoPrompter = 2,   // speech output must refuse it
    NoRecognizer = 4, // the recogniser must refuse it
    NoSpeech = NoPrompter | NoRecognizer,
};

struct Row
{
    Language language;
    Code iso;
    Code isoName;
    Code iso3;
    Code ttsIso3;
    LanguageGroup group;
    quint8 support;
};

// Indexed by the language's value. Do not correct the irregular codes "sl_SL", "no_NO", "kt_JP",
// "slk-SVL", "ara-WWW" and "yue-HKG" for both Cantonese: engines and data files expect them.
constexpr Row rows[] = {
    {NoLanguage, "00_00", "00_00", "000-000", "000-000", NoLanguageGroup, Standard},
    {German, "de_DE", "de_DE", "deu-DEU", "deu-DEU", NoLanguageGroup, Nlu},
    {EnglishUk, "en_GB", "en_GB", "eng-GBR", "eng-GBR", EnglishGroup, Nlu},
    {EnglishUs, "en_US", "en_US", "eng-USA", "eng-USA", EnglishGroup, Nlu},
    {Spanish, "es_ES", "es_ES", "spa-ESP", "spa-ESP", SpanishGroup, Nlu},
    {Italian, "it_IT", "it_IT", "ita-ITA", "ita-ITA", NoLanguageGroup, Nlu},
    {French, "fr_FR", "fr_FR", "fra-FRA", "fra-FRA", FrenchGroup, Nlu},
    {Language(7), "", "", "", "", NoLanguageGroup, Standard},
    {Dutch, "nl_NL", "nl_NL", "", "nld-NLD", NoLanguageGroup, Standard},
    {Arabic, "ar_AE", "ar_AE", "", "ara-WWW", NoLanguageGroup, Standard},
    {MandarinTaiwan, "cmn_TW", "zh_TW", "", "cmn-TWN", ChineseGroup, NoSpeech},
    {MandarinChina, "cmn_CN", "zh_CN", "cmn-CHN", "cmn-CHN", ChineseGroup, Nlu},
    {Korean, "ko_KR", "ko_KR", "kor-KOR", "kor-KOR", NoLanguageGroup, Standard},
    {Japanese, "ja_JP", "kt_JP", "jpn-JPN", "jpn-JPN", NoLanguageGroup, Nlu},
    {Russian, "ru_RU", "ru_RU", "rus-RUS", "rus-RUS", NoLanguageGroup, Standard},
    {FrenchCanada, "fr_CA", "fr_CA", "", "", FrenchGroup, Standard},
    {SpanishUs, "es_US", "es_US", "", "", SpanishGroup, Standard},
    {Portuguese, "pt_PT", "pt_PT", "", "por-POR", PortugueseGroup, Standard},
    {Polish, "pl_PL", "pl_PL", "", "pol-POL", NoLanguageGroup, NoSpeech},
    {Greek, "el_GR", "el_GR", "", "ell-GRC", NoLanguageGroup, NoSpeech},
    {Turkish, "tr_TR", "tr_TR", "", "tur-TUR", NoLanguageGroup, Standard},
    {Hungarian, "hu_HU", "hu_HU", "", "hun-HUN", NoLanguageGroup, NoSpeech},
    {Romanian, "ro_RO", "ro_RO", "", "", NoLanguageGroup, NoSpeech},
    {Swedish, "sv_SE", "sv_SE", "", "swe-SWE", NoLanguageGroup, NoSpeech},
    {PortugueseBrazil, "pt_BR", "pt_BR", "por-BRA", "por-BRA", PortugueseGroup, Nlu},
    {CantoneseHongKong, "yue_HK", "zh_TW", "", "yue-HKG", ChineseGroup, Standard},
    {CantoneseChina, "yue_CN", "zh_CN", "", "yue-HKG", ChineseGroup, Standard},
    {Slovak, "sk_SK", "sk_SK", "", "slk-SVL", NoLanguageGroup, NoSpeech},
    {Czech, "cs_CZ", "cs_CZ", "", "ces-CZE", NoLanguageGroup, NoSpeech},
    {Slovenian, "sl_SL", "sl_SL", "", "", NoLanguageGroup, NoSpeech},
    {Danish, "da_DK", "da_DK", "", "dan-DNK", NoLanguageGroup, NoSpeech},
    {Norwegian, "no_NO", "no_NO", "", "nor-NOR", NoLanguageGroup, NoSpeech},
    {Finnish, "fi_FI", "fi_FI", "", "fin-FIN", NoLanguageGroup, NoSpeech},
    {Indonesian, "id_ID", "id_ID", "", "ind-IDN", NoLanguageGroup, NoSpeech},
    {Thai, "th_TH", "th_TH", "", "tha-THA", NoLanguageGroup, NoSpeech},
};
constexpr int unassigned = 7;

constexpr bool rowsStandAtTheirValue()
{
    int value = 0;
    for (const Row& row : rows) {
        if (row.language != value++) {
            return false;
        }
    }
    return true;
}
static_assert(rowsStandAtTheirValue(), "rows are found by the language's value");
static_assert(sizeof(Language) == 4 && sizeof(LanguageGroup) == 4, "sizes are interface");

const Row& rowOf(Language language)
{
    return rows[language >= 0 && language < int(std::size(rows)) ? int(language) : unassigned];
}

/** Finds the language of a code of one family: a hash table built at compile time. */
class CodeIndex
{
public:
    constexpr explicit CodeIndex(const Code Row::*family)
        : family(family)
    {
        for (quint8& slot : slots) {
            slot = unassigned; // the row without codes
        }
        for (const Row& row : rows) {
            const Code& code = row.*family;
            if (code.size() > 0) {
                std::size_t slot = slotOf(code.data, code.size());
                while (slots[slot] != unassigned) {
                    slot = (slot + 1) % slotCount;
                }
                slots[slot] = quint8(row.language);
            }
        }
    }

    Language find(const QByteArray& code) const
    {
        if (code.size() < shortestCode) {
            return InvalidLanguage;
        }
        std::size_t slot = slotOf(code.constData(), code.size());
        for (; slots[slot] != unassigned; slot = (slot + 1) % slotCount) {
            if (rows[slots[slot]].*family == code) {
                return Language(slots[slot]);
            }
        }
        return InvalidLanguage;
    }

private:
    static constexpr std::size_t slotCount = 128;
    static constexpr int shortestCode = 5;

    // These letters distinguish the codes of each family; hardly any codes share a slot.
    static constexpr std::size_t slotOf(const char* code, Size size)
    {
        const auto letter = [code](Size index) { return std::size_t(quint8(code[index])); };
        return (letter(0) * 3 + letter(1) * 26 + letter(size - 1) * 7 + letter(size - 2))
               % slotCount;
    }

    const Code Row::*family;
    quint8 slots[slotCount] = {};
};

constexpr CodeIndex isoIndex(&Row::iso);
constexpr CodeIndex iso3Index(&Row::iso3);

// Filled by the application.
QHash<Language, QByteArray> stringIds;
QList<Language> glsLanguages;

void registerMetaTypes()
{
    qRegisterMetaType<Language>();
    qRegisterMetaType<QList<Language>>();
}
Q_CONSTRUCTOR_FUNCTION(registerMetaTypes)

} // namespace

Language convertIsoToLanguageId(const QByteArray& isoCode)
{
    return isoIndex.find(isoCode);
}

QByteArray convertLanguageIdToIso(const Language& language)
{
    return rowOf(language).iso.toByteArray();
}

QByteArray convertLanguageIdToIsoName(const Language& language)
{
    return rowOf(language).isoName.toByteArray();
}

QByteArray convertLanguageIdToIso3(const Language& language)
{
    return rowOf(language).iso3.toByteArray();
}

QByteArray convertTtsLanguageIdToIso3(const Language& language)
{
    return rowOf(language).ttsIso3.toByteArray();
}

Language convertIso3ToLanguageId(const QByteArray& iso3Code)
{
    return iso3Index.find(iso3Code);
}

QByteArray convertLanguageIdToString(const Language& language)
{
    return stringIds.value(language);
}

Language convertStringToLanguageId(const QByteArray& string)
{
    return stringIds.key(string, NoLanguage);
}

void updateLanguageIdToStringHash(const Language& language, const QByteArray& string)
{
    stringIds.insert(language, string);
}

bool isNluLanguage(const Language& language)
{
    return (rowOf(language).support & Nlu) != 0;
}

bool isInvalidPrompterLanguage(const Language& language)
{
    return (rowOf(language).support & NoPrompter) != 0;
}

bool isInvalidRecognizerLanguage(const Language& language)
{
    return (rowOf(language).support & NoRecognizer) != 0;
}

bool isGlsLanguage(const Language& language)
{
    return glsLanguages.contains(language);
}

void setGlsLanguages(const QList<Language>& languages)
{
    glsLanguages = languages;
}

bool isCantoneseLanguage(const Language& language)
{
    return language == CantoneseHongKong || language == CantoneseChina;
}

LanguageGroup languageGroup(const Language& language)
{
    return rowOf(language).group;
}

QString languageName(const Language& language)
{
    // By value.
    static constexpr const char* names[] = {"NoLanguage", "German", "EnglishUk", "EnglishUs",
        "Spanish", "Italian", "French", nullptr, "Dutch", "Arabic", "MandarinTaiwan",
        "MandarinChina", "Korean", "Japanese", "Russian", "FrenchCanada", "SpanishUs", "Portuguese",
        "Polish", "Greek", "Turkish", "Hungarian", "Romanian", "Swedish", "PortugueseBrazil",
        "CantoneseHongKong", "CantoneseChina", "Slovak", "Czech", "Slovenian", "Danish",
        "Norwegian", "Finnish", "Indonesian", "Thai"};
    static_assert(std::size(names) == std::size(rows), "one name for each row");
    return QLatin1String(names[rowOf(language).language]);
}

QDebug& operator<<(QDebug& stream, Language language)
{
    const QByteArray iso = convertLanguageIdToIso(language);
    // Writes the quotes itself: noquote() would remove those of a QByteArray.
    stream.nospace() << "Language { \"" << (iso.isEmpty() ? "Unknown" : iso.constData()) << "\" }";
    return stream.space();
}
