#include <core/parsers/sentencetokenizer.h>

#include <support/helpers.h>
#include <support/logcapture.h>
#include <support/plainways.h>

#include <QLoggingCategory>
#include <QTest>

#include <atomic>

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
    void split_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("sentences");

        const auto textOf = [](const QString& line) {
            return line.mid(7).replace(u("\\n"), u("\n")).replace(u("\\t"), u("\t"));
        };
        for (const QStringList& lines : readCases("sentences.txt")) {
            const QString text = textOf(lines[0]);
            QTest::addRow("%s", qUtf8Printable(lines[0]))
                << QString(text).remove(QLatin1Char('|'))
                << (lines.size() > 1 ? textOf(lines[1]).trimmed() : QString(text).replace(u("| "), u("|")));
        }
    }
    void split()
    {
        QFETCH(QString, text);
        const Language language = convertIsoToLanguageId(QByteArray(QTest::currentDataTag()).split(' ').first());
        LogCapture log;
        QTEST(SentenceTokenizer::split(text, language).join(u("|")), "sentences");
        const QString signature = u("void<unnamed>::modifyTags(QStringList&)");
        QCOMPARE(log.takeLines(),
            QStringList(u("debug: %1 (src/core/parsers/sentencetokenizer.cpp, %1, default)").arg(signature)));
    }

    void emptyTextIsSilent()
    {
        LogCapture log;
        QCOMPARE(
            SentenceTokenizer::split(QString(), German) + SentenceTokenizer::split(u(""), Japanese), QStringList());
        QCOMPARE(log.takeTexts(), QStringList());
    }

    void rulesOfTheLogSilenceTheLine()
    {
        LogCapture log;
        QLoggingCategory::setFilterRules(u("default.debug=false"));
        SentenceTokenizer::split(u("Ja."), German);
        QLoggingCategory::setFilterRules(QString());
        QCOMPARE(log.takeTexts(), QStringList());
    }

    void splitsLikeThePlainWay()
    {
        LogCapture log;
        QRandomGenerator random(1);
        for (int round = testRounds(); round > 0; --round) {
            const QString text = randomText(random, fragments, 40);
            for (const Language language : {German, Arabic, Korean, Japanese, MandarinTaiwan, MandarinChina,
                     CantoneseHongKong, CantoneseChina, InvalidLanguage}) {
                const QStringList expected = splitPlainly(text, language);
                QVERIFY2(SentenceTokenizer::split(text, language) == expected,
                    qPrintable(u("%1: %2").arg(language).arg(text)));
            }
            log.takeLines();
        }
    }

    // These end within the test's time only when the work is linear in the text.
    void longTexts()
    {
        LogCapture log;
        for (const char* part : {"A. ", "word ", "!", "\\!\\vol=1\\ ", "\\!\\=", "12. "}) {
            const QString text = u(part).repeated(1'000'000);
            for (const Language language : {German, Korean, Japanese}) {
                const QString joined = SentenceTokenizer::split(text, language).join(QString());
                QVERIFY2(joined.size() >= u(part).trimmed().size() * 1'000'000, part);
            }
        }
    }

    void splitsInSeveralThreads()
    {
        const QString text = u("\\!\\vol=5\\ Das ist der erste Satz hier. Und das ist nun der zweite!");
        const QStringList expected = splitPlainly(text, German);
        std::atomic<int> right{0};
        LogCapture log;
        runInThreads(8, [&text, &expected, &right](int) {
            for (int round = 0; round < 1000; ++round) {
                right += SentenceTokenizer::split(text, German) == expected ? 1 : 0;
            }
        });
        QCOMPARE(right.load(), 8 * 1000);
    }
};

QTEST_APPLESS_MAIN(SentenceTokenizerTest)
#include "sentencetokenizertest.moc"
