#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/** @p count and @p thing, which gets an "s" unless @p count is 1. */
QString counted(qint64 count, const char* thing);

/** How many characters to insert, delete or replace to turn one text into the other. */
int editDistance(const QString& a, const QString& b);

/** The same for @p a and each start of @p b, from the empty one to all of @p b. */
QVector<int> editDistances(const QString& a, const QString& b);

/**
 * The candidate that is nearest to @p word without regard to case, at less than @p limit; null when
 * there is none.
 */
QString nearest(const QString& word, const QStringList& candidates, int limit);

/** `unknown WHAT: "WORD"`, with `, did you mean "…"?` where a candidate is near. */
QString unknown(const char* what, const QString& word, const QStringList& candidates);
