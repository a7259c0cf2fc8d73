#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/** Of texts and lists: 64 bits wide with Qt 6, but an int with Qt 5. */
using Size = QString::size_type;

/** u"…"_s is a QString. */
inline QString operator""_s(const char16_t* text, std::size_t size)
{
    return QString::fromUtf16(text, Size(size));
}

/** The names in the rows of a table. */
template <typename Rows>
QStringList namesOf(const Rows& rows)
{
    QStringList names;
    for (const auto& row : rows) {
        names += QLatin1String(row.name);
    }
    return names;
}

/** @p text on one line: symbols such as U+240A replace line breaks and other control characters. */
QString onOneLine(QString text);

/** @p count and @p thing, which gets an "s" unless @p count is 1. */
QString counted(qint64 count, const char* thing);

/**
 * How many characters to insert, delete or replace to turn @p a into each start of @p b, from the
 * empty one to all of @p b.
 */
QVector<int> editDistances(const QString& a, const QString& b);

/**
 * The candidate that is nearest to @p word without regard to case, at less than @p limit; null when
 * there is none.
 */
QString nearest(const QString& word, const QStringList& candidates, int limit);

/** `unknown WHAT: "WORD"`, with `, did you mean "…"?` where a candidate is near. */
QString unknown(const char* what, const QString& word, const QStringList& candidates);
