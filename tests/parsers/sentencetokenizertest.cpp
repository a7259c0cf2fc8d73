#include <core/parsers/sentencetokenizer.h>

#include <support/logcapture.h>
#include <support/rounds.h>

#include <QRandomGenerator>
#include <QRegExp>
#include <QSet>
#include <QTest>

#include <thread>

namespace {

QString u(const char* text)
{
    return QString::fromUtf8(text);
}

/** The plain way: the rules one after the other, without a thought of speed. */
class PlainSplitter
{
public:
    static QStringList split(const QString& text, Language language)
    {
        const bool contextual = language != Arabic && language != Korean && !isSpaceless(language);
        const QString terminators = terminatorsOf(language);
        QStringList list;
        QString buffer;
        for (int i = 0; i < text.size(); ++i) {
            buffer += text[i];
            if (!terminators.contains(text[i])
                || (contextual && i + 1 < text.size() && !text[i + 1].isSpace())
                || (text[i] == QLatin1Char('!') && i > 0 && text[i - 1] == QLatin1Char('\\'))) {
                continue;
            }
            list += buffer.trimmed();
            buffer.clear();
        }
        if (!buffer.trimmed().isEmpty()) {
            list += buffer.trimmed();
        }
        if (contextual) {
            list = rejoined(list, terminators);
        }
        merge(list, isSpaceless(language) ? QString() : u(" "), contextual);
        carryTags(list);
        return list;
    }

private:
    static bool isSpaceless(Language language)
    {
        return language == Japanese || languageGroup(language) == ChineseGroup;
    }

    static QString terminatorsOf(Language language)
    {
        if (language == Arabic) {
            return u("!.؟⸮");
        }
        if (isSpaceless(language)) {
            return u("!?⁇⁈⁉。﹒﹖﹗︒︕︖！？｡") + (language == Japanese ? u("．") : QString());
        }
        return u("!.?⁇⁈⁉");
    }

    static QStringList rejoined(const QStringList& entries, const QString& terminators)
    {
        QStringList list;
        for (const QString& entry : entries) {
            bool joins = false;
            if (!list.isEmpty()) {
                const QString& last = list.last();
                joins = entry[0].isLetter() && entry[0].category() != QChar::Letter_Uppercase;
                int i = last.size() - 1;
                while (i > 0 && terminators.contains(last[i])) {
                    --i;
                }
                joins = joins || (i > 0 && last[i].isNumber());
            }
            if (joins) {
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
            while (i < list.size() && list[i].size() >= 10
                   && (!contextual || list[i].count(joiner) >= 5)) {
                ++i;
            }
            if (i == list.size() || list.size() == 1) {
                return;
            }
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
            if (resetAt >= 0) {
                carried.clear();
            }
            for (int at = 0; (at = tag.indexIn(list[i - 1], at)) >= 0; at += tag.matchedLength()) {
                if (at > resetAt) {
                    carried[ranks.value(tag.cap(2), -1)] = tag.cap(0);
                }
            }
            for (const QString& text : qAsConst(carried)) {
                list[i].prepend(text);
            }
        }
    }
};

QString randomText(QRandomGenerator& random)
{
    static const QStringList fragments = {u("."), u("!"), u("?"), u("⁉"), u("؟"), u("⸮"), u("。"),
        u("．"), u("！"), u("｡"), u("﹗"), u(" "), u(" "), u(" "), u("\n"), u("\t"),
        QString(QChar(0x00A0)), QString(QChar(0x3000)), QString(QChar(0x0085)),
        QString(QChar(0x2028)), QString(QChar(0)), u("a"), u("Word"),
        u("ein Satz mit vielen kleinen Worten"), u("É"), u("ß"), u("ǅ"), u("文字"), u("ไทย"),
        u("한국"), u("1"), u("23"), u("٣"), u("Ⅳ"), u("½"), u("𝟗"), u("😀"), QString(QChar(0xD83D)),
        QString(QChar(0xDE00)), u(","), u("\\"), u("\\!"), u("\\!\\"), u("="), u("rst\\"),
        u("\\!\\rst\\ "), u("\\!\\rst\\"), u("\\!\\lang=de\\ "), u("\\!\\vol=80\\\t"),
        u("\\!\\rate=5\\ "), u("\\!\\toi=x\\"), u("\\!\\domain=a.b\\\n"), u("\\!\\pause=1\\ "),
        u("\\!\\x=\\!\\rst\\ "), u("\\!\\=1\\ "), u("\\!\\a==\\ ")};
    // Few kinds of fragments in one text make rare neighbours likely.
    const int kinds = random.bounded(1, fragments.size());
    QVector<int> chosen(kinds);
    for (int& index : chosen) {
        index = random.bounded(fragments.size());
    }
    QString text;
    for (int count = random.bounded(40); count > 0; --count) {
        text += fragments[chosen[random.bounded(kinds)]];
    }
    return text;
}

} // namespace

class SentenceTokenizerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void split_data()
    {
        QTest::addColumn<int>("language");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("sentences");

        const auto row = [](const char* name, Language language, const char* text,
                             const QStringList& sentences) {
            QTest::newRow(name) << int(language) << u(text) << sentences;
        };
        row("white space only", German, " \n\t ", {});
        row("short text alone", German, " Ja. ", {u("Ja.")});
        row("two sentences", German, "Das ist der erste Satz hier. Und das ist nun der zweite!",
            {u("Das ist der erste Satz hier."), u("Und das ist nun der zweite!")});
        row("stop inside a word", German,
            "Das ist z.B. Wort für Wort eins.Zwei und drei. Das ist der zweite Satz hier.",
            {u("Das ist z.B. Wort für Wort eins.Zwei und drei."),
                u("Das ist der zweite Satz hier.")});
        row("lower case goes on, white space becomes one blank", EnglishUk,
            "It takes approx.\n\n ten minutes from here. Turn left at the next big crossing.",
            {u("It takes approx. ten minutes from here."),
                u("Turn left at the next big crossing.")});
        row("ordinal number goes on", German,
            "Wir sehen uns alle am 3. Mai in Berlin. Das ist ein Montag im Mai.",
            {u("Wir sehen uns alle am 3. Mai in Berlin."), u("Das ist ein Montag im Mai.")});
        row("a digit alone is no ordinal, but short", German,
            "5. Das ist ein Satz mit sechs Worten. Und so weiter und so fort, ja.",
            {u("5. Das ist ein Satz mit sechs Worten."), u("Und so weiter und so fort, ja.")});
        row("few words merge, though long", French,
            "Supercalifragilistique expialidocieuse. Voici une phrase de six mots.",
            {u("Supercalifragilistique expialidocieuse. Voici une phrase de six mots.")});
        row("short last one merges backward", German, "Das ist der erste Satz hier. Ja.",
            {u("Das ist der erste Satz hier. Ja.")});
        row("equal neighbours merge backward", Korean, "aaaaaaaaaa.b.cccccccccc.",
            {u("aaaaaaaaaa. b."), u("cccccccccc.")});
        row("shorter neighbour wins", Korean, "aaaaaaaaaaa.b.cccccccccc.",
            {u("aaaaaaaaaaa."), u("b. cccccccccc.")});
        row("merged again while short", Korean, "aaaaaaaaaaaaa.b.c.d.e.",
            {u("aaaaaaaaaaaaa."), u("b. c. d. e.")});
        row("Korean cuts inside numbers", Korean, "가격은 지금 1200.50 원입니다 손님.",
            {u("가격은 지금 1200."), u("50 원입니다 손님.")});
        row("Arabic", Arabic, "هل هذا سؤال طويل? هنا؟ نعم هذا هو الجواب.",
            {u("هل هذا سؤال طويل? هنا؟"), u("نعم هذا هو الجواب.")});
        row("Chinese has no ASCII stop", MandarinChina,
            "前方五百米右转.进入高速公路。好的。请注意限速一百二十公里。",
            {u("前方五百米右转.进入高速公路。"), u("好的。请注意限速一百二十公里。")});
        row("Japanese knows one stop more", Japanese,
            "三百メートル先を左です．次の信号を右方向です。",
            {u("三百メートル先を左です．"), u("次の信号を右方向です。")});
        row("Chinese does not", CantoneseHongKong, "三百メートル先を左です．次の信号を右方向です。",
            {u("三百メートル先を左です．次の信号を右方向です。")});
        row("a tag does not cut", Korean, "안녕하세요 \\!\\vol=80\\ 여러분!",
            {u("안녕하세요 \\!\\vol=80\\ 여러분!")});
        row("tags are carried by rank, the last of each", Korean,
            "\\!\\lang=ko\\ \\!\\x=1\\\t\\!\\vol=1\\ \\!\\vol=2\\ \\!\\domain=a\\ \\!\\y=2\\ 하나 "
            "둘 셋 넷.다섯 여섯 일곱 여덟 아홉.열 열하나 열둘 열셋.",
            {u("\\!\\lang=ko\\ \\!\\x=1\\\t\\!\\vol=1\\ \\!\\vol=2\\ \\!\\domain=a\\ \\!\\y=2\\ "
               "하나 둘 셋 넷."),
                u("\\!\\domain=a\\ \\!\\vol=2\\ \\!\\lang=ko\\ \\!\\y=2\\ 다섯 여섯 일곱 여덟 "
                  "아홉."),
                u("\\!\\domain=a\\ \\!\\vol=2\\ \\!\\lang=ko\\ \\!\\y=2\\ 열 열하나 열둘 열셋.")});
        row("reset", Korean,
            "\\!\\vol=1\\ 하나 둘 셋 \\!\\rst\\ 넷 \\!\\rate=3\\ 다섯.여섯 일곱 여덟 아홉 열.",
            {u("\\!\\vol=1\\ 하나 둘 셋 \\!\\rst\\ 넷 \\!\\rate=3\\ 다섯."),
                u("\\!\\rate=3\\ 여섯 일곱 여덟 아홉 열.")});
        row("a tag at the end lacks its blank", Korean,
            "하나 둘 셋 넷 다섯 \\!\\pau=1.5\\ 여섯 일곱 여덟 아홉 열.",
            {u("하나 둘 셋 넷 다섯 \\!\\pau=1."), u("5\\ 여섯 일곱 여덟 아홉 열.")});
    }
    void split()
    {
        QFETCH(int, language);
        QFETCH(QString, text);
        LogCapture log;
        QTEST(SentenceTokenizer::split(text, Language(language)), "sentences");
        const QVector<LogLine> lines = log.takeLines();
        QCOMPARE(lines.size(), 1);
        QCOMPARE(lines[0].type, QtDebugMsg);
        QCOMPARE(lines[0].text, u("void<unnamed>::modifyTags(QStringList&)"));
        QCOMPARE(lines[0].function, lines[0].text);
        QCOMPARE(lines[0].file, u("src/core/parsers/sentencetokenizer.cpp"));
    }

    void emptyTextIsSilent()
    {
        LogCapture log;
        QVERIFY(SentenceTokenizer::split(QString(), German).isEmpty());
        QVERIFY(SentenceTokenizer::split(u(""), Japanese).isEmpty());
        QVERIFY(log.takeLines().isEmpty());
    }

    void splitsLikeThePlainWay()
    {
        LogCapture log;
        QRandomGenerator random(1);
        for (int round = testRounds(20'000); round > 0; --round) {
            const QString text = randomText(random);
            for (const Language language : {German, Arabic, MandarinChina, Korean, Japanese,
                     CantoneseChina, InvalidLanguage}) {
                const QStringList expected = PlainSplitter::split(text, language);
                const QStringList sentences = SentenceTokenizer::split(text, language);
                if (sentences != expected) {
                    qCritical() << language << text;
                    QCOMPARE(sentences, expected);
                }
            }
            log.takeLines();
        }
    }

    // These end within the test's time only when the work is linear in the text.
    void longTexts_data()
    {
        QTest::addColumn<QString>("part");
        QTest::newRow("short sentences") << u("A. ");
        QTest::newRow("words") << u("word ");
        QTest::newRow("terminators") << u("!");
        QTest::newRow("tags") << u("\\!\\vol=1\\ ");
        QTest::newRow("openings") << u("\\!\\=");
        QTest::newRow("ordinals") << u("12. ");
    }
    void longTexts()
    {
        QFETCH(QString, part);
        LogCapture log;
        const QString text = part.repeated(1'000'000);
        for (const Language language : {German, Korean, Japanese}) {
            int length = 0;
            for (const QString& sentence : SentenceTokenizer::split(text, language)) {
                length += sentence.size();
            }
            QVERIFY(length >= part.trimmed().size() * 1'000'000);
        }
    }

    void splitsInSeveralThreads()
    {
        LogCapture log;
        const QString text =
            u("\\!\\vol=5\\ Das ist der erste Satz hier. Und das ist nun der zweite!");
        const QStringList expected = PlainSplitter::split(text, German);
        QCOMPARE(expected.size(), 2);
        std::atomic<int> right{0};
        std::vector<std::thread> threads;
        for (int i = 0; i < 8; ++i) {
            threads.emplace_back([&text, &expected, &right] {
                for (int round = 0; round < 1000; ++round) {
                    right += SentenceTokenizer::split(text, German) == expected ? 1 : 0;
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        QCOMPARE(right.load(), 8 * 1000);
    }
};

QTEST_APPLESS_MAIN(SentenceTokenizerTest)
#include "sentencetokenizertest.moc"
