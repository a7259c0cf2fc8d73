#pragma once

#include "text.h"

/** Ends the program with exit code 2 and one line on standard error. */
struct Failure
{
    QString reason;
};

/** @throw Failure with @p reason if @p isWrong */
void failIf(bool isWrong, const QString& reason);

/** Writes to standard output, as UTF-8. @throw Failure if that fails */
void print(const QString& text);

/** Flushes standard output. @throw Failure if that fails */
void finishOutput();

/** Raises the program's exit code, which starts at 0, to @p least. @return the exit code */
int raiseExitCode(int least);

/** Writes one line to standard error, after the program's name, and raises the exit code. */
void printError(const QString& reason, int leastExitCode = 0);

/** @p text in a colour if standard output is a terminal and NO_COLOR is not set. */
QString coloured(const QString& text, int colour);

/** Shows the library's log lines on standard error, or drops them. */
void showLog(bool isShown);
