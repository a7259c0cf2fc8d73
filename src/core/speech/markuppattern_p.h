#pragma once

#include <QString>
#include <QStringView>
#include <QVarLengthArray>

#include <optional>
#include <string_view>

/** The positions of "<", where forms may start. Most prompts have fewer than sixteen. */
using BracketPositions = QVarLengthArray<QString::size_type, 16>;

BracketPositions findBrackets(const QString& text);

/**
 * One form of prompt markup, written as the regular expression that documents it.
 *
 * Supports only what the forms use: fixed texts, `(\S+)` and `(.*)`, which also matches line
 * breaks. Gives the same match as QRegExp: the leftmost one, each group as long as the rest of the
 * pattern allows. Patterns are parsed at compile time and have no state, so they cost nothing at
 * load and several threads may match at once. Matching is linear in the text.
 */
class MarkupPattern
{
public:
    static constexpr int maximumGroups = 3;

    /** The captures of one match, as views into the searched text. */
    struct Match
    {
        QStringView groups[maximumGroups];

        /** Capture @p number, counted from 1. */
        QStringView capture(int number) const
        {
            return groups[number - 1];
        }
    };

    /** @p source is a literal. Implicit, so that table rows can hold plain literals. */
    constexpr MarkupPattern(const char16_t* source)
        : source(source)
    {
        std::u16string_view pattern = source;
        constexpr std::u16string_view nonBlanks = u"(\\S+)";
        constexpr std::u16string_view anything = u"(.*)";
        std::size_t open = 0;
        while ((open = pattern.find(u'(')) != pattern.npos) {
            texts[groupCount] = pattern.substr(0, open);
            pattern.remove_prefix(open);
            const bool isNonBlanks = pattern.substr(0, nonBlanks.size()) == nonBlanks;
            if (!isNonBlanks && pattern.substr(0, anything.size()) != anything) {
                refuse("unknown group");
            }
            groups[groupCount] = isNonBlanks ? Group::NonBlanks : Group::Anything;
            pattern.remove_prefix(isNonBlanks ? nonBlanks.size() : anything.size());
            ++groupCount;
        }
        texts[groupCount] = pattern;
        checkForm();
    }

    /** The first match in @p text. @p brackets are the positions of all "<" in it. */
    std::optional<Match> match(const QString& text, const BracketPositions& brackets) const;

    const char16_t* const source; ///< the regular expression

private:
    /** Not constexpr, so a pattern that has to call it does not compile. */
    static void refuse(const char* reason);

    enum class Group : quint8
    {
        NonBlanks,
        Anything
    };

    /**
     * Refuses patterns that would need backtracking. No `(\S+)` follows a `(.*)`, so what comes
     * after a `(.*)` matches wherever its fixed texts stand in order. A fixed text with a blank
     * precedes each `(\S+)`, so two runs of non-blanks never overlap, and each is scanned once.
     */
    constexpr void checkForm() const
    {
        if (groupCount == 0 || texts[0].empty() || texts[0].front() != u'<') {
            refuse("a form starts with a bracket and captures something");
        }
        for (int i = 0; i < groupCount; ++i) {
            const bool isRun = groups[i] == Group::NonBlanks;
            const bool followsAnything = i > 0 && groups[i - 1] == Group::Anything;
            if (isRun && (followsAnything || texts[i].find(u' ') == texts[i].npos)) {
                refuse("a run of non-blanks needs a blank before it");
            }
        }
    }

    /** The last position of each fixed text at which the rest of the pattern can match. */
    using Limits = std::size_t[maximumGroups + 2];

    bool findLimits(std::u16string_view text, std::size_t begin, Limits& latest) const;
    std::optional<Match> matchAt(
        std::u16string_view text, std::size_t start, const Limits& latest) const;

    // A pattern is texts[0], groups[0], texts[1], groups[1], ..., texts[groupCount].
    std::u16string_view texts[maximumGroups + 1];
    Group groups[maximumGroups] = {};
    int groupCount = 0;
};
