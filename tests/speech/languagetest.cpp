#include <core/speech/language.h>

#include <QDebug>
#include <QSequentialIterable>
#include <QTest>

namespace {

QVector<int> valuesWhere(bool (*isMember)(const Language&))
{
    QVector<int> values;
    for (int value = -2; value <= 300; ++value) {
        if (isMember(Language(value))) { values.append(value); }
    }
    return values;
}

} // namespace

class LanguageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listsTravelInVariants()
    {
        QVERIFY(QMetaType::typeFlags(QMetaType::type("Language")) & QMetaType::IsEnumeration);
        const QVariant list = QVariant::fromValue(QList<Language>{German, Thai});
        const auto elements = list.value<QSequentialIterable>();
        QCOMPARE(elements.size(), 2);
        QCOMPARE(elements.at(1).value<Language>(), Thai);
    }

    // What holds over the whole table, for values in and around it.
    void codesOfAllValues()
    {
        int isoCodes = 0;
        int iso3Codes = 0;
        int ttsCodes = 0;
        for (int value = -2; value <= 300; ++value) {
            const auto language = Language(value);
            const QByteArray iso = convertLanguageIdToIso(language);
            const QByteArray iso3 = convertLanguageIdToIso3(language);
            const QByteArray tts = convertTtsLanguageIdToIso3(language);
            QCOMPARE(languageName(language).isEmpty(), iso.isEmpty());
            isoCodes += iso.isEmpty() ? 0 : 1;
            iso3Codes += iso3.isEmpty() ? 0 : 1;
            ttsCodes += tts.isEmpty() ? 0 : 1;
            QCOMPARE(convertIsoToLanguageId(iso), iso.isEmpty() ? InvalidLanguage : language);
            QCOMPARE(convertIso3ToLanguageId(iso3), iso3.isEmpty() ? InvalidLanguage : language);
            QCOMPARE(convertLanguageIdToIsoName(language).size(), iso.isEmpty() ? 0 : 5);
            QVERIFY(iso3.isEmpty() || tts == iso3);
        }
        QCOMPARE(isoCodes, 34);
        QCOMPARE(iso3Codes, 12);
        QCOMPARE(ttsCodes, 30);
        QCOMPARE(languageName(Dutch) + languageName(PortugueseBrazil), QStringLiteral("DutchPortugueseBrazil"));
    }

    void irregularCodes()
    {
        // value, ISO, ISO name, ISO3, TTS ISO3
        for (const char* row :
            {"0 00_00 00_00 000-000 000-000", "7    ", "9 ar_AE ar_AE  ara-WWW", "10 cmn_TW zh_TW  cmn-TWN",
                "11 cmn_CN zh_CN cmn-CHN cmn-CHN", "13 ja_JP kt_JP jpn-JPN jpn-JPN", "19 el_GR el_GR  ell-GRC",
                "24 pt_BR pt_BR por-BRA por-BRA", "25 yue_HK zh_TW  yue-HKG", "26 yue_CN zh_CN  yue-HKG",
                "27 sk_SK sk_SK  slk-SVL", "29 sl_SL sl_SL  ", "31 no_NO no_NO  nor-NOR", "255    "}) {
            const auto language = Language(QByteArray(row).split(' ').first().toInt());
            const QByteArrayList codes{QByteArray::number(language), convertLanguageIdToIso(language),
                convertLanguageIdToIsoName(language), convertLanguageIdToIso3(language),
                convertTtsLanguageIdToIso3(language)};
            QCOMPARE(codes.join(' '), QByteArray(row));
        }
    }

    void unknownCodes()
    {
        for (const char* code : {"de", "de-DE", "DE_de", "de_DE ", "zh_TW", "nld-NLD", "yue-HKG", "deu_DEU"}) {
            QCOMPARE(convertIsoToLanguageId(code), InvalidLanguage);
            QCOMPARE(convertIso3ToLanguageId(code), InvalidLanguage);
        }
        QCOMPARE(convertIsoToLanguageId(QByteArray("de_DE\0", 6)), InvalidLanguage);
        QCOMPARE(convertIsoToLanguageId("deu-DEU"), InvalidLanguage);
        QCOMPARE(convertIso3ToLanguageId("de_DE"), InvalidLanguage);
    }

    // A code is static data; changing a caller's copy must leave the table as it is.
    void codesAreCopies()
    {
        QByteArray code = convertLanguageIdToIso(German);
        code[0] = 'x';
        code.append("tail");
        QCOMPARE(convertLanguageIdToIso(German), QByteArray("de_DE"));
        QCOMPARE(convertLanguageIdToIso(German).constData()[5], '\0');
    }

    void classification()
    {
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

    void tablesOfTheApplication()
    {
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

    void printer()
    {
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
