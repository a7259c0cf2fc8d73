#pragma once

#include <QString>

/** Ends the program with exit code 2 and one line on standard error. */
struct Failure
{
    QString reason;
};

/** Writes to standard output, as UTF-8. @throw Failure when that cannot be written */
void print(const QString& text);

/** Writes what standard output still buffers. @throw Failure when that cannot be written */
void finishOutput();

/** One line on standard error, behind the program's name. */
void printError(const QString& reason);

/** The same for an input that cannot be used, while others can: sets @p exitCode to 2. */
void refuse(int& exitCode, const QString& reason);

/** @p text in a colour of terminals, where output goes to one and NO_COLOR is not set. */
QString coloured(const QString& text, int colour);

/** Shows the library's log lines on standard error, or drops them. */
void showLog(bool isShown);
