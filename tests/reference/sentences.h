#pragma once

#include <support/helpers.h>

#include <core/speech/language.h>

#include <climits>

/**
 * @file
 * Reference implementation of SentenceTokenizer::split(), rule by rule:
 *
 *  1. The text is cut after each terminator of the language, but not after "\!", the start of a tag. In languages that
 *     heed the context, it is cut only before white space or at the end of the text.
 *  2. In those languages, a piece is rejoined if it starts with a letter that is not upper case, or if a number and
 *     terminators precede it. The first character of a sentence does not count as a number.
 *  3. Until none is left, the first sentence of fewer than ten characters, or in those languages of fewer than five
 *     blanks, is merged with its shorter neighbour; if both are equal, with the previous one.
 *  4. The tags in force at the end of a sentence are copied to the front of the next, in the order of their ranks.
 */
namespace reference {

inline QStringList rejoined(const QStringList& pieces, const QString& terminators) {
    QStringList list;
    for (const QString& piece : pieces) {
        const QString last = list.isEmpty() ? QString() : list.last();
        int i = last.size() - 1;
        while (i > 0 && terminators.contains(last[i])) { --i; }
        const bool isLower = piece[0].isLetter() && piece[0].category() != QChar::Letter_Uppercase;
        if (!last.isEmpty() && (isLower || (i > 0 && last[i].isNumber()))) {
            list.last() += u(" ") + piece;
        } else {
            list += piece;
        }
    }
    return list;
}

inline void merge(QStringList& list, const QString& joiner, bool heedsContext) {
    while (list.size() > 1) {
        int i = 0;
        while (i < list.size() && list[i].size() >= 10 && (!heedsContext || list[i].count(u(" ")) >= 5)) { ++i; }
        if (i == list.size()) { return; }
        const int previous = i > 0 ? list[i - 1].size() : INT_MAX;
        const int next = i + 1 < list.size() ? list[i + 1].size() : INT_MAX;
        const int first = previous > next ? i : i - 1;
        list[first] += joiner + list[first + 1];
        list.removeAt(first + 1);
    }
}

inline void carryTags(QStringList& list) {
    const QHash<QString, int> ranks = {{u("lang"), 0}, {u("vol"), 2}, {u("rate"), 3}, {u("toi"), 4}, {u("domain"), 6}};
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

inline QStringList sentences(const QString& text, Language language) {
    const bool isSpaceless = language == Japanese || languageGroup(language) == ChineseGroup;
    const bool heedsContext = language != Arabic && language != Korean && !isSpaceless;
    const QString terminators = language == Arabic     ? u("!.؟⸮")
                                : language == Japanese ? u("!?⁇⁈⁉。﹒﹖﹗︒︕︖！？｡．")
                                : isSpaceless          ? u("!?⁇⁈⁉。﹒﹖﹗︒︕︖！？｡")
                                                       : u("!.?⁇⁈⁉");
    QStringList list(QString{});
    for (int i = 0; i < text.size(); ++i) {
        list.last() += text[i];
        const bool isTag = text[i] == QLatin1Char('!') && i > 0 && text[i - 1] == QLatin1Char('\\');
        const bool isInside = heedsContext && i + 1 < text.size() && !text[i + 1].isSpace();
        if (terminators.contains(text[i]) && !isInside && !isTag) { list += QString(); }
    }
    for (QString& piece : list) { piece = piece.trimmed(); }
    list.removeAll(QString());
    if (heedsContext) { list = rejoined(list, terminators); }
    merge(list, isSpaceless ? QString() : u(" "), heedsContext);
    carryTags(list);
    return list;
}

} // namespace reference
