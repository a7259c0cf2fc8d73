#pragma once

class QStringList;

/**
 * The commands of orv, one source file each.
 *
 * Each takes the words behind its name and gives the exit code: 0 done, 1 for a negative finding
 * such as an unknown code. Wrong use and unreadable input are thrown as Failure, which makes it 2.
 */
int runCheck(const QStringList& arguments);
int runChecksum(const QStringList& arguments);
int runGenre(const QStringList& arguments);
int runInflate(const QStringList& arguments);
int runJson(const QStringList& arguments);
int runLanguage(const QStringList& arguments);
int runPrompt(const QStringList& arguments);
int runSentences(const QStringList& arguments);
int runSound(const QStringList& arguments);
int runTable(const QStringList& arguments);
