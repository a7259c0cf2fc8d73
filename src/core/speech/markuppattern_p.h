#pragma once

#include <QString>
#include <QStringView>
#include <QVarLengthArray>

#include <optional>
#include <string_view>

/** Where forms may start, found once for all of them; most prompts have fewer than sixteen. */
using BracketPositions = QVarLengthArray<int, 16>;

BracketPositions findBrackets(const QString& text);

/**
 * One form of prompt markup, written as the regular expression that documents it.
 *
 * Understands just what the forms are made of: fixed texts, `(\S+)` and `(.*)`, which captures line
 * breaks too. Finds what QRegExp finds for the same pattern: the leftmost match, each group as long
 * as the rest still fits. A pattern is taken apart by the compiler and has no state, so it costs
 * nothing at load and may be matched from several threads at once. Time is linear in the text.
 */
class MarkupPattern
{
public:
    static constexpr int maximumGroups = 3;

    /** The captures of one match, views into the text that was searched. */
    struct Match
    {
        QStringView groups[maximumGroups];

        /** Capture @p number, counted from 1. */
        QStringView capture(int number) const
        {
            return groups[number - 1];
        }
    };

    /** @p source is a literal. Converts, so that rows of a table are written plainly. */
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

    /** Searches @p text, in which a "<" stands at each of @p brackets and nowhere else. */
    std::optional<Match> match(const QString& text, const BracketPositions& brackets) const;

    const char16_t* const source; ///< the regular expression

private:
    /** Declared and nowhere defined: the compiler stops where it would have to call this. */
    static void refuse(const char* reason);

    enum class Group : quint8
    {
        NonBlanks,
        Anything
    };

    /**
     * The limits within which matching need not try one split after another, nor a run twice: once
     * a group may be anything, the rest fits wherever its fixed texts follow; and a run of
     * non-blanks ends before the blank of the next head, or of a text between two runs.
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

    /** Where each fixed text stands at the latest, so that the rest fits behind it. */
    using Limits = std::size_t[maximumGroups + 2];

    bool findLimits(std::u16string_view text, std::size_t begin, Limits& latest) const;
    std::optional<Match> matchAt(
        std::u16string_view text, std::size_t start, const Limits& latest) const;

    // Text 0, group 0, text 1, group 1, ... the last text.
    std::u16string_view texts[maximumGroups + 1];
    Group groups[maximumGroups] = {};
    int groupCount = 0;
};
