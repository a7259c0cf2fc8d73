#include <core/parsers/sentencetokenizer.h>

#include <core/log_p.h>

#include <QString>
#include <QStringView>

#include <algorithm>
#include <iterator>
#include <string_view>
#include <vector>

namespace {

/** A small constant set of characters, quick to answer that a character is no member. */
class CharacterSet
{
public:
    constexpr explicit CharacterSet(std::u16string_view members)
        : members(members)
    {
        for (const char16_t member : members) {
            filter |= bitOf(member);
        }
    }

    constexpr bool contains(char16_t character) const
    {
        return (filter & bitOf(character)) != 0 && members.find(character) != members.npos;
    }

private:
    static constexpr quint64 bitOf(char16_t character)
    {
        return Q_UINT64_C(1) << (character % 64);
    }

    quint64 filter = 0;
    std::u16string_view members;
};

/** How the sentences of some languages are told apart. */
struct Configuration
{
    CharacterSet terminators; // end a sentence
    CharacterSet clauseMarks; // part clauses; splitting does not heed them yet
    bool noWordSpacing;       // sentences are joined without a blank
    bool contextualSplit;     // what stands around a terminator decides; the spaces are counted
    bool spareFlag;           // not heeded
    int lengthLimit;          // not heeded
    int minSpaces;            // with contextualSplit, a sentence with fewer blanks is merged
    int spaceLimit;           // not heeded
    int minLength = 10;       // a sentence with fewer UTF-16 code units is merged
};

// The full stop is no terminator in Chinese, nor the Latin question mark in Arabic.
constexpr CharacterSet latinTerminators(u"!.?\u2047\u2048\u2049");
constexpr CharacterSet latinClauseMarks(u",;");
constexpr CharacterSet arabicTerminators(u"!.\u061F\u2E2E");
constexpr CharacterSet arabicClauseMarks(u"\u060C\u061B");
constexpr CharacterSet chineseTerminators(
    u"!?\u2047\u2048\u2049\u3002\uFE52\uFE56\uFE57\uFE12\uFE15\uFE16\uFF01\uFF1F\uFF61");
constexpr CharacterSet chineseClauseMarks(u";\u3001\uFF0C\uFE10\uFE11\uFE14\uFF1B");
constexpr CharacterSet japaneseTerminators(
    u"!?\u2047\u2048\u2049\u3002\uFE52\uFE56\uFE57\uFE12\uFE15\uFE16\uFF01\uFF1F\uFF61\uFF0E");
constexpr CharacterSet japaneseClauseMarks(u"\u3001\uFE11");

constexpr Configuration defaultConfiguration = {
    latinTerminators, latinClauseMarks, false, true, false, 200, 5, 30};
constexpr Configuration arabicConfiguration = {
    arabicTerminators, arabicClauseMarks, false, false, true, 100, 5, 20};
constexpr Configuration chineseConfiguration = {
    chineseTerminators, chineseClauseMarks, true, false, false, 30, 0, 0};
constexpr Configuration japaneseConfiguration = {
    japaneseTerminators, japaneseClauseMarks, true, false, false, 50, 0, 0};
constexpr Configuration koreanConfiguration = {
    latinTerminators, latinClauseMarks, false, false, false, 100, 5, 20};

const Configuration& configurationOf(Language language)
{
    switch (language) {
    case Arabic:
        return arabicConfiguration;
    case MandarinTaiwan:
    case MandarinChina:
    case CantoneseHongKong:
    case CantoneseChina:
        return chineseConfiguration;
    case Japanese:
        return japaneseConfiguration;
    case Korean:
        return koreanConfiguration;
    default:
        return defaultConfiguration;
    }
}

/** The inline tags in force, one of each rank at most, as views into the sentences they are in. */
class CarriedTags
{
public:
    int length() const
    {
        qsizetype length = 0;
        for (const std::u16string_view tag : tags) {
            length += qsizetype(tag.size());
        }
        return int(length);
    }

    /** Copies the tags to @p out; returns what follows them there. */
    char16_t* write(char16_t* out) const
    {
        for (const std::u16string_view tag : tags) {
            out = std::copy(tag.begin(), tag.end(), out);
        }
        return out;
    }

    /**
     * Takes in the tags and resets of one sentence.
     *
     * A tag is what the pattern `\\!(\\)(\S+)=(\S+)(\\)(\s)` finds, a reset `\\!(\\)(rst)(\\)(\s)`.
     * Either ends with the run of non-blanks it starts in, so a run holds one at the most, and
     * nothing behind the last blank counts. A run that ends with a reset holds no tag: that would
     * start before the reset.
     */
    void update(std::u16string_view sentence)
    {
        std::size_t start = 0;
        while ((start = sentence.find(opening, start)) != sentence.npos) {
            const auto blank = std::find_if(sentence.begin() + std::ptrdiff_t(start),
                sentence.end(), [](char16_t character) { return QChar(character).isSpace(); });
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

    // The order in which tags stand before a sentence; all other names share the last rank.
    static constexpr std::u16string_view names[] = {u"domain", u"toi", u"rate", u"vol", u"lang"};
    static constexpr std::size_t rankCount = std::size(names) + 1;

    /** @p run goes from an opening to the blank behind, which is part of a tag. */
    void takeRun(std::u16string_view run)
    {
        const std::u16string_view body = run.substr(0, run.size() - 1);
        if (body.size() >= reset.size() && body.substr(body.size() - reset.size()) == reset) {
            std::fill(std::begin(tags), std::end(tags), std::u16string_view());
            return;
        }
        // Name and value hold one character at least; the name goes up to the last "=" that fits.
        const std::size_t shortest = opening.size() + std::u16string_view(u"n=v\\").size();
        if (body.size() < shortest || body.back() != u'\\') {
            return;
        }
        const std::size_t equals = body.rfind(u'=', body.size() - 3);
        if (equals != body.npos && equals > opening.size()) {
            tags[rankOf(body.substr(opening.size(), equals - opening.size()))] = run;
        }
    }

    static std::size_t rankOf(std::u16string_view name)
    {
        return std::size_t(std::find(std::begin(names), std::end(names), name) - std::begin(names));
    }

    std::u16string_view tags[rankCount];
};

/** What stands between two cuts, without the white space around it; never empty. */
struct Piece
{
    int begin;
    int end;
};

/** Successive pieces that will be joined. */
struct Sentence
{
    int firstPiece;
    int pieceCount;
    int length; // with the joiners
    int blanks; // with the joiners; exact only below the configuration's minSpaces
};

/** The splitting of one text, step by step. */
class Splitter
{
public:
    Splitter(const QString& input, const Configuration& rules)
        : text(QStringView(input).utf16(), std::size_t(input.size()))
        , configuration(rules)
        , joinerLength(rules.noWordSpacing ? 0 : 1)
    {
        pieces.reserve(text.size() / 32 + 1);
        sentences.reserve(text.size() / 32 + 1);
    }

    void cut()
    {
        std::size_t begin = 0;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (configuration.terminators.contains(text[i]) && cutsAt(i)) {
                addPiece(begin, i + 1);
                begin = i + 1;
            }
        }
        addPiece(begin, text.size());
    }

    /**
     * Merges each short sentence, the first one first, with its shorter neighbour, the previous one
     * when they are equal. What lies before the first short one stays long, so one walk does it.
     */
    void mergeShortSentences()
    {
        const auto begin = sentences.begin();
        const auto end = sentences.end();
        auto done = begin;
        for (auto next = begin; next != end;) {
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
        sentences.erase(done, end);
    }

    /** The sentences, each with the tags in front that were in force at the end of the last. */
    QStringList sentencesWithTags() const
    {
        const bool hasTags = text.find(u'\\') != text.npos;
        CarriedTags tags;
        QStringList result;
        result.reserve(int(sentences.size()));
        for (const Sentence& sentence : sentences) {
            const int tagsLength = tags.length();
            QString joined(tagsLength + sentence.length, Qt::Uninitialized);
            auto* const out = reinterpret_cast<char16_t*>(joined.data());
            write(sentence, tags.write(out));
            result.append(joined);
            if (hasTags) {
                tags.update(std::u16string_view(out + tagsLength, std::size_t(sentence.length)));
            }
        }
        return result;
    }

private:
    QChar at(std::size_t index) const
    {
        return QChar(text[index]);
    }

    bool cutsAt(std::size_t index) const
    {
        if (configuration.contextualSplit && index + 1 < text.size() && !at(index + 1).isSpace()) {
            return false;
        }
        const bool opensTag = text[index] == u'!' && index > 0 && text[index - 1] == u'\\';
        return !opensTag;
    }

    void addPiece(std::size_t begin, std::size_t end)
    {
        while (begin < end && at(begin).isSpace()) {
            ++begin;
        }
        while (begin < end && at(end - 1).isSpace()) {
            --end;
        }
        if (begin == end) {
            return;
        }
        const Sentence piece = {int(pieces.size()), 1, int(end - begin), countBlanks(begin, end)};
        if (configuration.contextualSplit && !sentences.empty()
            && continues(sentences.back(), at(begin))) {
            append(sentences.back(), piece);
        } else {
            sentences.push_back(piece);
        }
        pieces.push_back({int(begin), int(end)});
    }

    int countBlanks(std::size_t begin, std::size_t end) const
    {
        const int enough = configuration.contextualSplit ? configuration.minSpaces : 0;
        int blanks = 0;
        for (std::size_t i = begin; i < end && blanks < enough; ++i) {
            blanks += text[i] == u' ' ? 1 : 0;
        }
        return blanks;
    }

    /** Whether the terminator behind @p sentence ended an abbreviation or an ordinal number. */
    bool continues(const Sentence& sentence, QChar next) const
    {
        if (next.isLetter() && !next.isUpper()) {
            return true;
        }
        // The very first character of a sentence does not count as a number: "5. Next" are two.
        const Piece& last = pieces[std::size_t(sentence.firstPiece + sentence.pieceCount - 1)];
        const int first = sentence.pieceCount == 1 ? last.begin + 1 : last.begin;
        for (int i = last.end - 1; i >= first; --i) {
            if (!configuration.terminators.contains(text[std::size_t(i)])) {
                return at(std::size_t(i)).isNumber();
            }
        }
        return false;
    }

    bool isShort(const Sentence& sentence) const
    {
        return sentence.length < configuration.minLength
               || (configuration.contextualSplit && sentence.blanks < configuration.minSpaces);
    }

    void append(Sentence& sentence, const Sentence& next) const
    {
        sentence.pieceCount += next.pieceCount;
        sentence.length += joinerLength + next.length;
        sentence.blanks += joinerLength + next.blanks;
    }

    void write(const Sentence& sentence, char16_t* out) const
    {
        for (int i = 0; i < sentence.pieceCount; ++i) {
            if (i > 0 && joinerLength > 0) {
                *out++ = u' ';
            }
            const Piece& piece = pieces[std::size_t(sentence.firstPiece + i)];
            out = std::copy(text.data() + piece.begin, text.data() + piece.end, out);
        }
    }

    const std::u16string_view text;
    const Configuration& configuration;
    const int joinerLength;
    std::vector<Piece> pieces;
    std::vector<Sentence> sentences;
};

} // namespace

QStringList SentenceTokenizer::split(const QString& text, Language language)
{
    if (text.isEmpty()) {
        return QStringList();
    }
    Splitter splitter(text, configurationOf(language));
    splitter.cut();
    splitter.mergeShortSentences();

    // The line tells that a text was split; printed plainly, it costs a fraction of a debug stream.
    static constexpr char here[] = "void<unnamed>::modifyTags(QStringList&)";
    ORV_LOGGER(here).debug("%s", here);
    return splitter.sentencesWithTags();
}
