#include <core/speech/markuppattern_p.h>

#include <algorithm>

namespace {

constexpr std::size_t nowhere = std::u16string_view::npos;

bool isBlank(char16_t character)
{
    const bool isPrintableAscii = character > u' ' && character < 0x7F; // the usual case
    return !isPrintableAscii && QChar(character).isSpace();
}

/** The last position of @p fixed within [@p begin, @p end) of @p text, or nowhere. */
std::size_t findLast(
    std::u16string_view text, std::u16string_view fixed, std::size_t begin, std::size_t end)
{
    if (end < begin + fixed.size()) {
        return nowhere;
    }
    std::size_t at = end - fixed.size();
    // Check the first character before calling compare(): few positions match it.
    while (text[at] != fixed.front() || text.compare(at, fixed.size(), fixed) != 0) {
        if (at == begin) {
            return nowhere;
        }
        --at;
    }
    return at;
}

/** The last position of @p fixed after a run of one or more non-blanks from @p begin. */
std::size_t findLastInRun(
    std::u16string_view text, std::u16string_view fixed, std::size_t begin, std::size_t end)
{
    const auto first = text.begin() + std::ptrdiff_t(begin);
    const auto blank = std::size_t(std::find_if(first, text.end(), isBlank) - text.begin());
    // The fixed text starts after the first non-blank and no later than at the first blank.
    return findLast(text, fixed, begin + 1, std::min(end, blank + fixed.size()));
}

} // namespace

BracketPositions findBrackets(const QString& text)
{
    BracketPositions positions;
    for (QString::size_type at = -1; (at = text.indexOf(QLatin1Char('<'), at + 1)) >= 0;) {
        positions.append(at);
    }
    return positions;
}

std::optional<MarkupPattern::Match> MarkupPattern::match(
    const QString& input, const BracketPositions& brackets) const
{
    const std::u16string_view text(QStringView(input).utf16(), std::size_t(input.size()));
    Limits latest;
    bool hasLimits = false;
    for (const auto bracket : brackets) {
        const auto start = std::size_t(bracket);
        if (text.compare(start, texts[0].size(), texts[0]) != 0) {
            continue;
        }
        if (!hasLimits && !findLimits(text, start, latest)) {
            return std::nullopt;
        }
        hasLimits = true;
        if (const std::optional<Match> match = matchAt(text, start, latest)) {
            return match;
        }
    }
    return std::nullopt;
}

/**
 * Sets the limits of the fixed texts after the last `(.*)` groups; all other limits are the end of
 * the text.
 *
 * @return false if one of these fixed texts is missing
 */
bool MarkupPattern::findLimits(std::u16string_view text, std::size_t begin, Limits& latest) const
{
    std::fill(std::begin(latest), std::end(latest), text.size());
    for (int i = groupCount; i > 0 && groups[i - 1] == Group::Anything; --i) {
        latest[i] = findLast(text, texts[i], begin, latest[i + 1]);
        if (latest[i] == nowhere) {
            return false;
        }
    }
    return true;
}

/** The match at @p start, the position of the first fixed text. */
std::optional<MarkupPattern::Match> MarkupPattern::matchAt(
    std::u16string_view text, std::size_t start, const Limits& latest) const
{
    Match match;
    std::size_t begin = start + texts[0].size();
    for (int i = 0; i < groupCount; ++i) {
        const std::u16string_view next = texts[i + 1];
        const std::size_t end = groups[i] == Group::Anything
                                    ? latest[i + 1]
                                    : findLastInRun(text, next, begin, latest[i + 2]);
        if (end == nowhere || end < begin) {
            return std::nullopt;
        }
        match.groups[i] = QStringView(text.data() + begin, qsizetype(end - begin));
        begin = end + next.size();
    }
    return match;
}
