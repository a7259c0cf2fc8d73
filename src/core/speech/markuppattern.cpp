#include <core/speech/markuppattern_p.h>

#include <algorithm>

namespace {

constexpr std::size_t nowhere = std::u16string_view::npos;

bool isBlank(char16_t character)
{
    return QChar(character).isSpace();
}

/** The last place where @p fixed stands within [@p begin, @p end) of @p text. */
std::size_t findLast(
    std::u16string_view text, std::u16string_view fixed, std::size_t begin, std::size_t end)
{
    if (end < begin) {
        return nowhere;
    }
    const std::size_t found = text.substr(begin, end - begin).rfind(fixed);
    return found == nowhere ? nowhere : begin + found;
}

/** The last place where @p fixed ends a run of non-blanks that starts at @p begin. */
std::size_t findLastInRun(
    std::u16string_view text, std::u16string_view fixed, std::size_t begin, std::size_t end)
{
    const auto first = text.begin() + std::ptrdiff_t(begin);
    const auto blank = std::size_t(std::find_if(first, text.end(), isBlank) - text.begin());
    // The fixed text may start with non-blanks of the run and go on behind it; the run is not
    // empty.
    return findLast(text, fixed, begin + 1, std::min(end, blank + fixed.size()));
}

} // namespace

std::optional<MarkupPattern::Match> MarkupPattern::match(
    const QString& input, int firstBracket) const
{
    const std::u16string_view text(QStringView(input).utf16(), std::size_t(input.size()));

    // Where each fixed text stands at the latest, so that the rest fits behind it: known beforehand
    // behind a group that may be anything, else bounded by the end of the text.
    std::size_t latest[maximumGroups + 2];
    std::fill(std::begin(latest), std::end(latest), text.size());
    for (int i = groupCount; i > 0 && groups[i - 1] == Group::Anything; --i) {
        latest[i] = findLast(text, texts[i], std::size_t(firstBracket), latest[i + 1]);
        if (latest[i] == nowhere) {
            return std::nullopt;
        }
    }

    for (int start = firstBracket; start >= 0; start = input.indexOf(QLatin1Char('<'), start + 1)) {
        if (const std::optional<Match> match = matchAt(text, std::size_t(start), latest)) {
            return match;
        }
    }
    return std::nullopt;
}

std::optional<MarkupPattern::Match> MarkupPattern::matchAt(
    std::u16string_view text, std::size_t start, const std::size_t* latest) const
{
    if (text.compare(start, texts[0].size(), texts[0]) != 0) {
        return std::nullopt;
    }
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
