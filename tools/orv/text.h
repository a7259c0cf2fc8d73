#pragma once

// For all files of the client. All of <QtCore> would double the time of the linters.
#include <QCoreApplication>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QVariant>
#include <QVector>

/** The size of texts and lists: an int with Qt 5, 64 bits with Qt 6. */
using Size = QString::size_type;

/** u"…"_s is a QString. */
inline QString operator""_s(const char16_t* text, std::size_t size)
{
    return QString::fromUtf16(text, Size(size));
}

/** The member "name" of each row of a table. */
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
 * How many insertions, deletions and replacements of characters turn @p a into each start of @p b,
 * from the empty one to all of @p b.
 */
QVector<int> editDistances(const QString& a, const QString& b);

/** The candidate with the least distance from @p word in any case, below @p limit; null if none. */
QString nearest(const QString& word, const QStringList& candidates, int limit);

/** `unknown WHAT: "WORD"`, with `, did you mean "…"?` if a candidate is similar. */
QString unknown(const char* what, const QString& word, const QStringList& candidates);
