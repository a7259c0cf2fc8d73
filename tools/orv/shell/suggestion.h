#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/** How many characters to insert, delete or replace to turn one text into the other. */
int editDistance(const QString& a, const QString& b);

/** The same for @p a and each start of @p b, from the empty one to all of it. */
QVector<int> editDistances(const QString& a, const QString& b);

/**
 * `unknown WHAT: "WORD"`, and a question behind it where @p word is a slip of the pen away from one
 * of the candidates.
 */
QString unknown(const char* what, const QString& word, const QStringList& candidates);

/** The same for a language's code. */
QString unknownLanguage(const QString& code);
