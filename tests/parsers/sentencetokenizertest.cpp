#include <core/parsers/sentencetokenizer.h>

#include <reference/sentences.h>
#include <support/logcapture.h>

#include <QLoggingCategory>

namespace {

const QStringList fragments =
    QString::fromUtf8(R"(.|!|?|⁇|⁈|⁉|؟|⸮|。|．|！|？|｡|﹒|﹖|﹗|︒|︕|︖| | | |
|a|Word|ein Satz mit vielen kleinen Worten|É|ß|ǅ|文字|ไทย|한국|1|23|٣|Ⅳ|½|𝟗|😀|,|\|\!|\!\|=|rst\|\!\rst\ |\!\rst\|
|\!\lang=de\ |\!\vol=8\	|\!\rate=5\ |\!\toi=x\|\!\domain=a.b\ |\!\pau=1\ |\!\x=\!\rst\ |\!\=1\ |\!\a==\ )")
        .split(QLatin1Char('|'))
    + QString::fromUtf16(u"\u0085|\u00A0|\u1680|\u2028|\u205F|\u3000|\xD83D|\xDE00").split(QLatin1Char('|'))
    + QStringList({QString(QChar(0)), u("С"), u("Ю"), u("п")}); // as far from terminators as their table is long

} // namespace

class SentenceTokenizerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void split_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("sentences");

        for (const QString& block : u(readData("sentences.txt")).split(u("\n\n")).mid(1)) { // behind the head
            const QStringList lines = block.trimmed().split(QLatin1Char('\n'));
            QTest::newRow(qUtf8Printable(lines[0])) << lines[1] << QStringList(lines.mid(2));
        }
        QTest::newRow("de_DE blanks") << " \n\t " << QStringList();
        QTest::newRow("de_DE blanks around") << " Ja. " << QStringList{u("Ja.")};
        QTest::newRow("en_GB blanks behind an abbreviation")
            << "It takes approx.\n\n ten minutes." << QStringList{u("It takes approx. ten minutes.")};
    }
    void split() {
        QFETCH(QString, text);
        const Language language = convertIsoToLanguageId(QByteArray(QTest::currentDataTag()).split(' ').first());
        LogCapture log;
        QTEST(SentenceTokenizer::split(text, language), "sentences");
        const QString signature = u("void<unnamed>::modifyTags(QStringList&)");
        QCOMPARE(log.takeLines(),
            QStringList(u("debug: %1 (src/core/parsers/sentencetokenizer.cpp, %1, default)").arg(signature)));
    }

    void silent() {
        LogCapture log;
        QVERIFY(SentenceTokenizer::split(QString(), German).isEmpty());
        QVERIFY(SentenceTokenizer::split(u(""), Japanese).isEmpty());
        QLoggingCategory::setFilterRules(u("default.debug=false"));
        SentenceTokenizer::split(u("Ja."), German);
        QLoggingCategory::setFilterRules(QString());
        QCOMPARE(log.takeTexts(), QStringList());
    }

    void splitsLikeTheReference() {
        LogCapture log;
        QRandomGenerator random(1);
        for (int round = testRounds(4); round > 0; --round) {
            const QString text = randomText(random, fragments, 40);
            for (const Language language : {German, Arabic, Korean, Japanese, MandarinTaiwan, MandarinChina,
                     CantoneseHongKong, CantoneseChina, InvalidLanguage}) {
                const QStringList expected = reference::sentences(text, language);
                QVERIFY2(SentenceTokenizer::split(text, language) == expected,
                    qPrintable(u("%1: %2").arg(language).arg(text)));
            }
            log.takeTexts();
        }
    }

    // These end within the test's time only when the work is linear in the text.
    void longTexts() {
        LogCapture log;
        for (const char* part : {"A. ", "word ", "!", "\\!\\vol=1\\ ", "\\!\\=", "12. "}) {
            const QString text = u(part).repeated(1'000'000);
            for (const Language language : {German, Korean, Japanese}) {
                const QString joined = SentenceTokenizer::split(text, language).join(QString());
                QVERIFY2(joined.size() >= u(part).trimmed().size() * 1'000'000, part);
            }
        }
    }

    void splitsInSeveralThreads() {
        const QString text = u("\\!\\vol=5\\ Das ist der erste Satz hier. Und das ist nun der zweite!");
        const QStringList expected = reference::sentences(text, German);
        LogCapture log;
        QVERIFY(isAlwaysTrue(8, 1000, [&](int) { return SentenceTokenizer::split(text, German) == expected; }));
    }
};

QTEST_APPLESS_MAIN(SentenceTokenizerTest)
#include "sentencetokenizertest.moc"
