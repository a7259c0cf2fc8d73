#pragma once

#include "text.h"

#include <QCommandLineParser>

class CommandLine;

/** Lists the values of an option or argument; nullptr if it can be any word or file. */
using Choices = QStringList (*)();

/** An option of a command. */
struct Option
{
    const char* name; ///< without dashes; a name of one letter is written with one dash
    const char* text;
    const char* value = nullptr; ///< the name of its value in the help; nullptr for a switch
    const char* otherwise = "";  ///< the default value
    Choices choices = nullptr;
};

/** An argument of a command. */
struct Argument
{
    const char* name;
    const char* syntax; ///< in the usage line
    const char* text;
    Choices choices = nullptr;
};

/** A command, for the program, its help and the completion of shells. */
struct Command
{
    const char* name;
    const char* summary; ///< one line of at most 66 characters
    QString text;        ///< the help before the options
    QVector<Argument> arguments;
    QVector<Option> options;
    QStringList examples; ///< the words after the command's name
    void (*run)(const CommandLine& commandLine);
    int mostArguments = 1 << 30;
};

/** The words after the name of a command. Each command has --help, --version and --verbose. */
class CommandLine : public QCommandLineParser
{
public:
    explicit CommandLine(const Command& command);

    /** The output of --help. */
    QString help() const;

    /**
     * Reads the words; answers --help and --version.
     *
     * @return whether to run the command
     * @throw Failure for wrong use
     */
    bool read(const QStringList& words);

    /** The first argument, or else "-" for standard input. */
    QString fileName() const;

private:
    QString misuse(const QStringList& words) const;

    const Command& command;
};

/** The place of @p word among @p choices. @throw Failure if it is not among them */
int placeAmong(const QStringList& choices, const char* what, const QString& word);

/** The command of that name. @throw Failure if there is none */
const Command& commandOf(const QVector<Command>& commands, const QString& name);

/**
 * The completions of the last of the words after "orv"; ":files" for file names. The completion
 * scripts of the shells call this.
 */
QStringList completions(const QVector<Command>& commands, const QStringList& words);
