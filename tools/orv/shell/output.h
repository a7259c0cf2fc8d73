#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

class QJsonObject;

/** Writes to standard output, as UTF-8. @throw Failure when that cannot be written */
void print(const QString& text);

/** Writes one object on a line of its own. */
void printJson(const QJsonObject& object);

/** Writes rows in aligned columns, two blanks apart; empty cells show as "-". */
void printTable(const QVector<QStringList>& rows);

/** Writes what standard output still buffers. @throw Failure when that cannot be written */
void finishOutput();

/** One line on standard error, behind the program's name. */
void printError(const QString& reason);

/** @p text on one line: symbols such as U+240A replace line breaks and other control characters. */
QString onOneLine(QString text);

/** Colours for terminals, by their codes. */
enum Colour
{
    Red = 31,
    Yellow = 33,
    Cyan = 36,
};

/** @p text in a colour where standard output is a terminal and NO_COLOR is not set. */
QString coloured(const QString& text, Colour colour);

/** Keeps the library's log lines from standard error, until showLog(true). */
void takeOverLog();
void showLog(bool isShown);
