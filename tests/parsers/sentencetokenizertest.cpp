#include <core/parsers/sentencetokenizer.h>

#include <support/helpers.h>
#include <support/logcapture.h>

#include <QRegExp>
#include <QTest>

#include <atomic>

namespace {

/** The plain way: the rules one after the other, without a thought of speed. */
class PlainSplitter
{
public:
    static QStringList split(const QString& text, Language language)
    {
        const bool spaceless = language == Japanese || languageGroup(language) == ChineseGroup;
        const bool contextual = language != Arabic && language != Korean && !spaceless;
        const QString terminators = language == Arabic     ? u("!.؟⸮")
                                    : language == Japanese ? u("!?⁇⁈⁉。﹒﹖﹗︒︕︖！？｡．")
                                    : spaceless            ? u("!?⁇⁈⁉。﹒﹖﹗︒︕︖！？｡")
                                                           : u("!.?⁇⁈⁉");
        QStringList list;
        QString buffer;
        for (int i = 0; i < text.size(); ++i) {
            buffer += text[i];
            const bool isTag = text[i] == QLatin1Char('!') && i > 0 && text[i - 1] == QLatin1Char('\\');
            const bool isInside = contextual && i + 1 < text.size() && !text[i + 1].isSpace();
            if (terminators.contains(text[i]) && !isInside && !isTag) {
                list += buffer.trimmed();
                buffer.clear();
            }
        }
        list += buffer.trimmed();
        list.removeAll(QString());
        if (contextual) { list = rejoined(list, terminators); }
        merge(list, spaceless ? QString() : u(" "), contextual);
        carryTags(list);
        return list;
    }

private:
    static QStringList rejoined(const QStringList& entries, const QString& terminators)
    {
        QStringList list;
        for (const QString& entry : entries) {
            const QString last = list.isEmpty() ? QString() : list.last();
            int i = last.size() - 1;
            while (i > 0 && terminators.contains(last[i])) { --i; }
            const bool isLower = entry[0].isLetter() && entry[0].category() != QChar::Letter_Uppercase;
            if (!last.isEmpty() && (isLower || (i > 0 && last[i].isNumber()))) {
                list.last() += QLatin1Char(' ') + entry;
            } else {
                list += entry;
            }
        }
        return list;
    }

    static void merge(QStringList& list, const QString& joiner, bool contextual)
    {
        const int limit = 2 * list.size();
        for (int pass = 0; pass < limit; ++pass) {
            int i = 0;
            while (i < list.size() && list[i].size() >= 10 && (!contextual || list[i].count(joiner) >= 5)) { ++i; }
            if (i == list.size() || list.size() == 1) { return; }
            const int previous = i > 0 ? list[i - 1].size() : INT_MAX;
            const int next = i + 1 < list.size() ? list[i + 1].size() : INT_MAX;
            if (previous > next) {
                list[i + 1] = list[i] + joiner + list[i + 1];
            } else {
                list[i - 1] += joiner + list[i];
            }
            list.removeAt(i);
        }
    }

    static void carryTags(QStringList& list)
    {
        const QHash<QString, int> ranks = {
            {u("lang"), 0}, {u("vol"), 2}, {u("rate"), 3}, {u("toi"), 4}, {u("domain"), 6}};
        QRegExp tag(u(R"(\\!(\\)(\S+)=(\S+)(\\)(\s))"));
        QRegExp reset(u(R"(\\!(\\)(rst)(\\)(\s))"));
        QMap<int, QString> carried;
        for (int i = 1; i < list.size(); ++i) {
            const int resetAt = reset.lastIndexIn(list[i - 1]);
            if (resetAt >= 0) { carried.clear(); }
            for (int at = 0; (at = tag.indexIn(list[i - 1], at)) >= 0; at += tag.matchedLength()) {
                if (at > resetAt) { carried[ranks.value(tag.cap(2), -1)] = tag.cap(0); }
            }
            for (const QString& text : qAsConst(carried)) { list[i].prepend(text); }
        }
    }
};

const QStringList fragments =
    QString::fromUtf8(R"(.|!|?|⁉|؟|⸮|。|．|！|｡|﹗| | | |
|a|Word|ein Satz mit vielen kleinen Worten|É|ß|ǅ|文字|ไทย|한국|1|23|٣|Ⅳ|½|𝟗|😀|,|\|\!|\!\|=|rst\|\!\rst\ |\!\rst\|
|\!\lang=de\ |\!\vol=8\	|\!\rate=5\ |\!\toi=x\|\!\domain=a.b\ |\!\pau=1\ |\!\x=\!\rst\ |\!\=1\ |\!\a==\ )")
        .split(QLatin1Char('|'))
    + QString::fromUtf16(u"\u0085|\u00A0|\u2028|\u3000|\xD83D|\xDE00").split(QLatin1Char('|'));

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

    void splitsLikeThePlainWay()
    {
        LogCapture log;
        QRandomGenerator random(1);
        for (int round = testRounds(); round > 0; --round) {
            const QString text = randomText(random, fragments, 40);
            for (const Language language :
                {German, Arabic, MandarinChina, Korean, Japanese, CantoneseChina, InvalidLanguage}) {
                const QStringList expected = PlainSplitter::split(text, language);
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
        const QStringList expected = PlainSplitter::split(text, German);
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
