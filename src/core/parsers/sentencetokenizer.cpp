#include <core/parsers/sentencetokenizer.h>

#include <core/log_p.h>

#include <QString>
#include <QStringView>
#include <QVarLengthArray>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace {

using Size = QString::size_type;

/** The characters that end a sentence: a hash table without collisions. */
class Terminators
{
public:
    constexpr explicit Terminators(std::u16string_view members)
        : count(members.size())
    {
        for (const char16_t member : members) {
            slots[member % slotCount] = member;
        }
    }

    constexpr bool contains(char16_t character) const
    {
        return slots[character % slotCount] == character;
    }

    /** Whether no two members share a slot. */
    constexpr bool isExact() const
    {
        std::size_t found = 0;
        for (std::size_t i = 0; i < slotCount; ++i) {
            found += slots[i] % slotCount == i ? 1 : 0;
        }
        return found == count;
    }

private:
    static constexpr std::size_t slotCount = 1024; // the smallest power of two without collisions

    char16_t slots[slotCount] = {1}; // a free slot holds a character of another slot
    std::size_t count;
};

// "." does not end a sentence in Chinese and Japanese, nor "?" in Arabic. Each set contains "!", so
// that cut() finds the start of every tag.
constexpr Terminators latinTerminators(u"!.?\u2047\u2048\u2049");
constexpr Terminators arabicTerminators(u"!.\u061F\u2E2E");
constexpr Terminators chineseTerminators(
    u"!?\u2047\u2048\u2049\u3002\uFE52\uFE56\uFE57\uFE12\uFE15\uFE16\uFF01\uFF1F\uFF61");
constexpr Terminators japaneseTerminators(
    u"!?\u2047\u2048\u2049\u3002\uFE52\uFE56\uFE57\uFE12\uFE15\uFE16\uFF01\uFF1F\uFF61\uFF0E");
static_assert(latinTerminators.isExact() && arabicTerminators.isExact()
              && chineseTerminators.isExact() && japaneseTerminators.isExact());

/** The rules by which the texts of some languages are split. */
struct Rules
{
    const Terminators& terminators;
    bool hasWordSpacing; // a blank joins sentences
    bool isContextual;   // the characters around a terminator matter; blanks are counted
};

constexpr Rules defaultRules = {latinTerminators, true, true};
constexpr Rules arabicRules = {arabicTerminators, true, false};
constexpr Rules chineseRules = {chineseTerminators, false, false};
constexpr Rules japaneseRules = {japaneseTerminators, false, false};
constexpr Rules koreanRules = {latinTerminators, true, false};

// A sentence with fewer UTF-16 code units is merged; with contextual rules one of fewer blanks, too.
constexpr int minLength = 10;
constexpr int minBlanks = 5;

const Rules& rulesOf(Language language)
{
    switch (language) {
    case Arabic:
        return arabicRules;
    case MandarinTaiwan:
    case MandarinChina:
    case CantoneseHongKong:
    case CantoneseChina:
        return chineseRules;
    case Japanese:
        return japaneseRules;
    case Korean:
        return koreanRules;
    default:
        return defaultRules;
    }
}

/** QChar::isSpace(), without its table look-up for the letters of most scripts. */
bool isSpace(char16_t character)
{
    const bool canBe = character <= 0xA0 || (character >= 0x1680 && character <= 0x3000);
    return canBe && QChar(character).isSpace();
}

/** The inline tags in force, at most one of each rank, as views into the sentences. */
class CarriedTags
{
public:
    Size length() const
    {
        return totalLength;
    }

    /** Copies the tags to @p out. @return the end of the copy */
    char16_t* write(char16_t* out) const
    {
        if (totalLength > 0) {
            for (const std::u16string_view tag : tags) {
                out = std::copy(tag.begin(), tag.end(), out);
            }
        }
        return out;
    }

    /**
     * Applies the tags and resets of one sentence, which contains at most @p openings of them.
     *
     * A tag matches `\\!(\\)(\S+)=(\S+)(\\)(\s)`, a reset `\\!(\\)(rst)(\\)(\s)`. Both end with the
     * run of non-blanks in which they start. So a run contains at most one of them, and text after
     * the last blank contains none. If a run ends with a reset, any tag in it starts before the
     * reset, which clears it.
     */
    void update(std::u16string_view sentence, Size openings)
    {
        std::size_t start = 0;
        for (; openings > 0 && (start = sentence.find(opening, start)) != sentence.npos;
             --openings) {
            const auto blank =
                std::find_if(sentence.begin() + std::ptrdiff_t(start), sentence.end(), isSpace);
            if (blank == sentence.end()) {
                return;
            }
            const auto end = std::size_t(blank - sentence.begin()) + 1;
            takeRun(sentence.substr(start, end - start));
            start = end;
        }
    }

private:
    static constexpr std::u16string_view opening = u"\\!\\";
    static constexpr std::u16string_view reset = u"\\!\\rst\\";

    // Tags are written in this order; all other names share the last rank.
    static constexpr std::u16string_view names[] = {u"domain", u"toi", u"rate", u"vol", u"lang"};
    static constexpr std::size_t rankCount = std::size(names) + 1;

    /** @p run starts with an opening and ends with the next blank, which is part of the tag. */
    void takeRun(std::u16string_view run)
    {
        const std::u16string_view body = run.substr(0, run.size() - 1);
        if (body.size() >= reset.size() && body.substr(body.size() - reset.size()) == reset) {
            *this = CarriedTags();
            return;
        }
        // Name and value have at least one character each; the last "=" separates them.
        const std::size_t shortest = opening.size() + std::u16string_view(u"n=v\\").size();
        if (body.size() < shortest || body.back() != u'\\') {
            return;
        }
        const std::size_t equals = body.rfind(u'=', body.size() - 3);
        if (equals != body.npos && equals > opening.size()) {
            std::u16string_view& tag =
                tags[rankOf(body.substr(opening.size(), equals - opening.size()))];
            totalLength += Size(run.size()) - Size(tag.size());
            tag = run;
        }
    }

    static std::size_t rankOf(std::u16string_view name)
    {
        return std::size_t(std::find(std::begin(names), std::end(names), name) - std::begin(names));
    }

    std::u16string_view tags[rankCount];
    Size totalLength = 0;
};

/** The text between two cuts, without surrounding white space; never empty. */
struct Piece
{
    Size begin;
    Size end;
};

/** Consecutive pieces that will be joined; they follow those of the previous sentence. */
struct Sentence
{
    Size pieceCount;
    Size length;   // with the joiners
    Size blanks;   // with the joiners; exact only below minBlanks
    Size openings; // of tags
};

/** The splitting of one text, step by step. */
class Splitter
{
public:
    Splitter(const QString& input, const Rules& rules)
        : text(trimmed(input))
        , terminators(rules.terminators)
        , isContextual(rules.isContextual)
        , joinerLength(rules.hasWordSpacing ? 1 : 0)
    {
        constexpr std::size_t usualLength = 32;
        pieces.reserve(Size(text.size() / usualLength));
        sentences.reserve(Size(text.size() / usualLength));
    }

    void cut()
    {
        std::size_t begin = 0;
        Size openings = 0;
        for (std::size_t i = 0; (i = findTerminator(i)) != text.size(); ++i) {
            if (text[i] == u'!' && i > 0 && text[i - 1] == u'\\') {
                ++openings;
            } else if (!isContextual || i + 1 == text.size() || isSpace(text[i + 1])) {
                addPiece(begin, i + 1, openings);
                begin = i + 1;
                openings = 0;
            }
        }
        addPiece(begin, text.size(), openings);
    }

    /**
     * Merges each short sentence, in order, with its shorter neighbour; if both are equal, with the
     * previous one. The sentences before it stay long, so one pass is enough.
     */
    void mergeShortSentences()
    {
        Sentence* const begin = sentences.begin();
        Sentence* const end = sentences.end();
        Sentence* done = begin;
        for (Sentence* next = begin; next != end;) {
            Sentence current = *next++;
            while (isShort(current) && next != end
                   && (done == begin || (done - 1)->length > next->length)) {
                append(current, *next++);
            }
            if (isShort(current) && done != begin) {
                append(*(done - 1), current);
            } else {
                *done++ = current;
            }
        }
        sentences.resize(Size(done - begin));
    }

    /** The sentences, each preceded by the tags in force at the end of the previous one. */
    QStringList sentencesWithTags() const
    {
        CarriedTags tags;
        QStringList result;
        result.reserve(sentences.size());
        const Piece* piece = pieces.begin();
        for (const Sentence& sentence : sentences) {
            const Size tagsLength = tags.length();
            // Assigned in place: appending a copy would change the reference count twice.
            result.append(QString());
            result.last() = QString(tagsLength + sentence.length, Qt::Uninitialized);
            auto* const out = reinterpret_cast<char16_t*>(result.last().data());
            write(piece, sentence.pieceCount, tags.write(out));
            piece += sentence.pieceCount;
            tags.update({out + tagsLength, std::size_t(sentence.length)}, sentence.openings);
        }
        return result;
    }

private:
    /** No piece of a trimmed text ends with white space. */
    static std::u16string_view trimmed(QStringView text)
    {
        const QStringView result = text.trimmed();
        return {result.utf16(), std::size_t(result.size())};
    }

    QChar at(std::size_t index) const
    {
        return QChar(text[index]);
    }

    std::size_t findTerminator(std::size_t from) const
    {
        const auto found = std::find_if(text.begin() + std::ptrdiff_t(from), text.end(),
            [this](char16_t character) { return terminators.contains(character); });
        return std::size_t(found - text.begin());
    }

    void addPiece(std::size_t begin, std::size_t end, Size openings)
    {
        while (begin < end && isSpace(text[begin])) {
            ++begin;
        }
        if (begin == end) {
            return;
        }
        Sentence piece = {1, Size(end - begin), 0, openings};
        if (isContextual) {
            piece.blanks = countBlanks(begin, end);
        }
        if (isContextual && !sentences.isEmpty() && continues(sentences.back(), at(begin))) {
            append(sentences.back(), piece);
        } else {
            sentences.append(piece);
        }
        pieces.append({Size(begin), Size(end)});
    }

    /** Counts up to minBlanks or more, in blocks without a branch for each character. */
    int countBlanks(std::size_t begin, std::size_t end) const
    {
        quint16 blanks = 0;
        while (begin < end && blanks < minBlanks) {
            const std::size_t blockEnd = std::min(begin + 32, end);
            for (; begin < blockEnd; ++begin) {
                blanks = quint16(blanks + (text[begin] == u' ' ? 1 : 0));
            }
        }
        return blanks;
    }

    /** Whether @p sentence ends with an abbreviation or ordinal number, so @p next continues it. */
    bool continues(const Sentence& sentence, QChar next) const
    {
        if (!next.isUpper() && next.isLetter()) {
            return true;
        }
        // The first character of a sentence does not count as a number: "5. Next" is split.
        const Piece& last = pieces.back();
        const Size first = sentence.pieceCount == 1 ? last.begin + 1 : last.begin;
        for (Size i = last.end - 1; i >= first; --i) {
            if (!terminators.contains(text[std::size_t(i)])) {
                return at(std::size_t(i)).isNumber();
            }
        }
        return false;
    }

    bool isShort(const Sentence& sentence) const
    {
        return sentence.length < minLength || (isContextual && sentence.blanks < minBlanks);
    }

    void append(Sentence& sentence, const Sentence& next) const
    {
        sentence.pieceCount += next.pieceCount;
        sentence.length += joinerLength + next.length;
        sentence.blanks += joinerLength + next.blanks;
        sentence.openings += next.openings;
    }

    void write(const Piece* piece, Size count, char16_t* out) const
    {
        for (Size i = 0; i < count; ++i, ++piece) {
            if (i > 0 && joinerLength > 0) {
                *out++ = u' ';
            }
            out = std::copy(text.data() + piece->begin, text.data() + piece->end, out);
        }
    }

    const std::u16string_view text;
    const Terminators& terminators;
    const bool isContextual;
    const Size joinerLength;
    QVarLengthArray<Piece, 32> pieces;
    QVarLengthArray<Sentence, 32> sentences;
};

/**
 * Logs that a text was split. Services search for this text, so it stays, although no function has
 * this name. A debug stream would take six times as long.
 */
void logSplit()
{
    qt_message_output(QtDebugMsg, ORV_LOG_CONTEXT("void<unnamed>::modifyTags(QStringList&)"),
        QStringLiteral("void<unnamed>::modifyTags(QStringList&)"));
}

} // namespace

QStringList SentenceTokenizer::split(const QString& text, Language language)
{
    if (text.isEmpty()) {
        return QStringList();
    }
    Splitter splitter(text, rulesOf(language));
    splitter.cut();
    splitter.mergeShortSentences();

    logSplit();
    return splitter.sentencesWithTags();
}
