#include <core/speech/language.h>

#include <support/helpers.h>

namespace {

const struct {
    const char* name;
    QByteArray (*toCode)(const Language&);
    Language (*toLanguage)(const QByteArray&); // null if only toCode() exists
    const char* codes;                         // of the values from 0 on; "-" for no code
} tables[] = {
    {"ISO", convertLanguageIdToIso, convertIsoToLanguageId,
        "00_00 de_DE en_GB en_US es_ES it_IT fr_FR - nl_NL ar_AE cmn_TW cmn_CN ko_KR ja_JP ru_RU fr_CA es_US pt_PT "
        "pl_PL el_GR tr_TR hu_HU ro_RO sv_SE pt_BR yue_HK yue_CN sk_SK cs_CZ sl_SL da_DK no_NO fi_FI id_ID th_TH"},
    {"ISO name", convertLanguageIdToIsoName, nullptr,
        "00_00 de_DE en_GB en_US es_ES it_IT fr_FR - nl_NL ar_AE zh_TW zh_CN ko_KR kt_JP ru_RU fr_CA es_US pt_PT "
        "pl_PL el_GR tr_TR hu_HU ro_RO sv_SE pt_BR zh_TW zh_CN sk_SK cs_CZ sl_SL da_DK no_NO fi_FI id_ID th_TH"},
    {"ISO 3", convertLanguageIdToIso3, convertIso3ToLanguageId,
        "000-000 deu-DEU eng-GBR eng-USA spa-ESP ita-ITA fra-FRA - - - - cmn-CHN kor-KOR jpn-JPN rus-RUS - - - - - - "
        "- - - por-BRA - - - - - - - - - -"},
    {"speech output", convertTtsLanguageIdToIso3, nullptr,
        "000-000 deu-DEU eng-GBR eng-USA spa-ESP ita-ITA fra-FRA - nld-NLD ara-WWW cmn-TWN cmn-CHN kor-KOR jpn-JPN "
        "rus-RUS - - por-POR pol-POL ell-GRC tur-TUR hun-HUN - swe-SWE por-BRA yue-HKG yue-HKG slk-SVL ces-CZE - "
        "dan-DNK nor-NOR fin-FIN ind-IDN tha-THA"}};

QVector<int> valuesWhere(bool (*isMember)(const Language&)) {
    QVector<int> values;
    for (int value = -2; value <= 300; ++value) {
        if (isMember(Language(value))) { values.append(value); }
    }
    return values;
}

/** The names of the languages in the header, by their values. */
QMap<int, QString> declaredLanguages() {
    const QString header = u(readFile(u(TEST_SOURCES "src/core/speech/language.h")));
    const QString body = header.section(u("enum Language"), 1).section(u("InvalidLanguage"), 0, 0);
    QMap<int, QString> names;
    for (auto found = QRegularExpression(u("(\\w+) = (\\d+)")).globalMatch(body); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        names.insert(match.captured(2).toInt(), match.captured(1));
    }
    return names;
}

} // namespace

class LanguageTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void variantsHoldLists() {
        QVERIFY(QMetaType(QMetaType::type("Language")).flags() & QMetaType::IsEnumeration);
        const QVariant list = QVariant::fromValue(QList<Language>{German, Thai});
        const auto elements = list.value<QSequentialIterable>();
        QCOMPARE(elements.size(), 2);
        QCOMPARE(elements.at(1).value<Language>(), Thai);
    }

    void codes_data() { addRows(tables); }
    void codes() {
        const auto& [name, toCode, toLanguage, expected] = currentRow(tables);
        QStringList codes;
        const int last = declaredLanguages().lastKey();
        for (int value = 0; value <= last; ++value) {
            const QByteArray code = toCode(Language(value));
            codes += code.isEmpty() ? u("-") : u(code);
            if (toLanguage != nullptr && !code.isEmpty()) { QCOMPARE(toLanguage(code), Language(value)); }
        }
        QCOMPARE(codes.join(u(" ")), u(expected));
        for (const int value : {-1, last + 1, 255, INT_MAX}) { QCOMPARE(toCode(Language(value)), QByteArray()); }
    }

    void everyLanguageHasARow() {
        QVERIFY(declaredLanguages().size() > Thai - 1);
        for (int value = -2; value <= 300; ++value) {
            QCOMPARE(languageName(Language(value)), declaredLanguages().value(value));
            QCOMPARE(convertLanguageIdToIso(Language(value)).isEmpty(), !declaredLanguages().contains(value));
        }
    }

    void unknownCodes() {
        for (const char* code : {"", "de", "de-DE", "DE_de", "de_DE ", "zh_TW", "nld-NLD", "yue-HKG", "deu_DEU"}) {
            QCOMPARE(convertIsoToLanguageId(code), InvalidLanguage);
            QCOMPARE(convertIso3ToLanguageId(code), InvalidLanguage);
        }
        QCOMPARE(convertIsoToLanguageId(QByteArray("de_DE\0", 6)), InvalidLanguage);
        QCOMPARE(convertIsoToLanguageId("deu-DEU"), InvalidLanguage);
        QCOMPARE(convertIso3ToLanguageId("de_DE"), InvalidLanguage);
    }

    // A code is static data; changing a caller's copy must not change the table.
    void codesAreCopies() {
        QByteArray code = convertLanguageIdToIso(German);
        code[0] = 'x';
        code.append("tail");
        QCOMPARE(convertLanguageIdToIso(German), QByteArray("de_DE"));
        QCOMPARE(convertLanguageIdToIso(German).constData()[5], '\0');
    }

    void classification() {
        const QVector<int> refused = {10, 18, 19, 21, 22, 23, 27, 28, 29, 30, 31, 32, 33, 34};
        QCOMPARE(valuesWhere(isNluLanguage), QVector<int>({1, 2, 3, 4, 5, 6, 11, 13, 24}));
        QCOMPARE(valuesWhere(isInvalidPrompterLanguage), refused);
        QCOMPARE(valuesWhere(isInvalidRecognizerLanguage), refused);
        QCOMPARE(valuesWhere(isCantoneseLanguage), QVector<int>({25, 26}));

        QMap<int, QVector<int>> groups;
        for (int value = -2; value <= 300; ++value) { groups[languageGroup(Language(value))].append(value); }
        QCOMPARE(groups.take(255).size(), 303 - 12);
        const QMap<int, QVector<int>> expected = {
            {0, {2, 3}}, {1, {4, 16}}, {2, {6, 15}}, {3, {10, 11, 25, 26}}, {4, {17, 24}}};
        QCOMPARE(groups, expected);
    }

    void tablesOfTheApplication() {
        QVERIFY(valuesWhere(isGlsLanguage).isEmpty());
        setGlsLanguages({Thai, German, Thai});
        QCOMPARE(valuesWhere(isGlsLanguage), QVector<int>({1, 34}));
        setGlsLanguages({});
        QVERIFY(valuesWhere(isGlsLanguage).isEmpty());

        QCOMPARE(convertStringToLanguageId(""), NoLanguage);
        updateLanguageIdToStringHash(German, "old");
        updateLanguageIdToStringHash(German, "new");
        updateLanguageIdToStringHash(Thai, "");
        QCOMPARE(convertLanguageIdToString(German), QByteArray("new"));
        QCOMPARE(convertLanguageIdToString(French), QByteArray());
        QCOMPARE(convertStringToLanguageId("new"), German);
        QCOMPARE(convertStringToLanguageId("old"), NoLanguage);
        QCOMPARE(convertStringToLanguageId(""), Thai);
    }

    void printer() {
        QString text;
        QDebug(&text) << German << Language(7) << "end";
        QCOMPARE(text, QStringLiteral("Language { \"de_DE\" } Language { \"Unknown\" } end "));
        text.clear();
        QDebug(&text).nospace().noquote() << CantoneseChina << 1 << 2;
        QCOMPARE(text, QStringLiteral("Language { \"yue_CN\" } 1 2 "));
    }
};

QTEST_APPLESS_MAIN(LanguageTest)
#include "languagetest.moc"
