// Compares the library with the reference implementations, on random texts. Built only with Qt 5: the references use
// QRegExp, which Qt 6 has only in a compatibility module.

#include <reference/comparisons.h>
#include <support/logcapture.h>

const QStringList sentenceFragments =
    QString::fromUtf8(R"(.|!|?|⁇|⁈|⁉|؟|⸮|。|．|！|？|｡|﹒|﹖|﹗|︒|︕|︖| | | |
|a|Word|ein Satz mit vielen kleinen Worten|É|ß|ǅ|文字|ไทย|한국|1|23|٣|Ⅳ|½|𝟗|😀|,|\|\!|\!\|=|rst\|\!\rst\ |\!\rst\|
|\!\lang=de\ |\!\vol=8\	|\!\rate=5\ |\!\toi=x\|\!\domain=a.b\ |\!\pau=1\ |\!\x=\!\rst\ |\!\=1\ |\!\a==\ )")
        .split(QLatin1Char('|'))
    + QString::fromUtf16(u"\u0085|\u00A0|\u1680|\u2028|\u205F|\u3000|\xD83D|\xDE00").split(QLatin1Char('|'))
    + QStringList({QString(QChar(0)), u("С"), u("Ю"), u("п")}); // in free and used slots of the terminators' table

class ReferenceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void prompts() {
        QStringList fragments = u("de_DE|ding|a b|<|>|\"|/>| |\n|=\"x").split(QLatin1Char('|'));
        for (const PromptForm& form : promptForms) {
            fragments += u(form.pattern.source).split(QRegExp(u("\\([^)]*\\)")));
        }
        fragments.removeDuplicates();
        for (const int odd : {0x00, 0x1C, 0x85, 0xA0, 0x180E, 0x2028, 0xD83D}) { fragments += QChar(odd); }
        const QTemporaryDir folder;
        const QString fileName = folder.filePath(u("common.json"));
        QVERIFY(writeFile(fileName, R"([{"id": "ding", "value": "/%1"}])"));
        LogCapture log;
        const auto sounds = loadBrandSounds(u("B"), fileName);
        QRandomGenerator random(1);
        for (int round = testRounds(); round > 0; --round) {
            const QString input = randomText(random, fragments, 12);
            for (const PromptContext context : {GeneralContext, BrandSoundContext, A4AContext}) {
                QVERIFY2(reference::hasSamePrompt(input, context, sounds),
                    qPrintable(u("%1 in context %2").arg(input).arg(context)));
            }
            log.takeTexts();
        }
    }

    void sentences() {
        LogCapture log;
        QRandomGenerator random(1);
        for (int round = testRounds(4); round > 0; --round) {
            const QString text = randomText(random, sentenceFragments, 40);
            for (const Language language : {German, Arabic, Korean, Japanese, MandarinTaiwan, MandarinChina,
                     CantoneseHongKong, CantoneseChina, InvalidLanguage, Language(round % 256)}) {
                QVERIFY2(reference::hasSameSentences(text, language), qPrintable(u("%1: %2").arg(language).arg(text)));
            }
            log.takeTexts();
        }
    }

    void tables() {
        QRandomGenerator random(1);
        for (int round = testRounds(2); round > 0; --round) {
            const int separator = round % 2 == 0 ? "^]\\-[\""[round / 2 % 6] : round / 2 % 256; // half of them special
            const auto mark = QString(QLatin1Char(char(separator)));
            const QString line = randomText(random,
                {mark, mark, mark, u(";"), u("\""), u("\""), u(" "), u("a"), u("b^"), u("]"), u("ä"), u("文"), u("\t")},
                12);
            QVERIFY2(reference::hasSameFields(line, separator),
                qPrintable(u("%1 with separator %2").arg(line).arg(separator)));
        }
    }
};

QTEST_GUILESS_MAIN(ReferenceTest)
#include "referencetest.moc"
