#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

class QJsonObject;

/** Writes to standard output, as UTF-8. @throw Failure when that cannot be written */
void print(const QString& text);

/** Writes one object on a line of its own. */
void printJson(const QJsonObject& object);

/** Writes rows in aligned columns, two blanks apart; cells that are empty show as "-". */
void printTable(const QVector<QStringList>& rows);

/** Hands on what standard output still holds. @throw Failure when that cannot be written */
void finishOutput();

/** One line on standard error, behind the program's name. */
void printError(const QString& reason);

/** @p text on one line: symbols such as U+240A stand in for line breaks and the like. */
QString onOneLine(QString text);

/**
 * Takes over the library's log lines: keeps them from standard error unless they are to be shown,
 * and remembers the last one that tells of a failure.
 */
void takeOverLog();
void showLog(bool isShown);

/** What the library warned of last, since the last call, without the function; or nothing. */
QString takeLoggedFailure();
