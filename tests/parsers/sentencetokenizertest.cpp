#include <core/parsers/sentencetokenizer.h>

#include <support/helpers.h>
#include <support/logcapture.h>

class SentenceTokenizerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void split_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("sentences");

        for (const QString& block : u(readData("sentences.txt")).split(u("\n\n")).mid(1)) { // without the comment
            const QStringList lines = block.trimmed().split(QLatin1Char('\n'));
            QTest::newRow(qUtf8Printable(lines[0])) << lines[1] << QStringList(lines.mid(2));
        }
        QTest::newRow("de_DE blanks") << " \n\t " << QStringList();
        QTest::newRow("de_DE blanks around a sentence") << " Ja. " << QStringList{u("Ja.")};
        QTest::newRow("en_GB blanks after an abbreviation")
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

    void writesNoLogLine() {
        LogCapture log;
        QVERIFY(SentenceTokenizer::split(QString(), German).isEmpty());
        QVERIFY(SentenceTokenizer::split(u(""), Japanese).isEmpty());
        QLoggingCategory::setFilterRules(u("default.debug=false"));
        SentenceTokenizer::split(u("Ja."), German);
        QLoggingCategory::setFilterRules(QString());
        QCOMPARE(log.takeTexts(), QStringList());
    }

    // Exceeds the test's time limit unless the work is linear in the text.
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
        const QStringList expected = SentenceTokenizer::split(text, German);
        LogCapture log;
        QVERIFY(isAlwaysTrue(8, 1000, [&](int) { return SentenceTokenizer::split(text, German) == expected; }));
    }
};

QTEST_APPLESS_MAIN(SentenceTokenizerTest)
#include "sentencetokenizertest.moc"
