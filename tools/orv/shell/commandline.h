#pragma once

#include <QCommandLineParser>
#include <QString>
#include <QStringList>
#include <QVector>

class CommandLine;

/** Lists the words that an option or an argument takes; nullptr where any word or file may stand. */
using Choices = QStringList (*)();

/** An option of a command. */
struct Option
{
    const char* name; ///< without its dashes; one letter has one dash
    const char* text;
    const char* value = nullptr; ///< what the help calls its value; nullptr for a switch
    const char* otherwise = "";  ///< the value without the option
    Choices choices = nullptr;
};

/** An argument of a command. */
struct Argument
{
    const char* name;
    const char* syntax; ///< as the usage line shows it
    const char* text;
    Choices choices = nullptr;
};

/** A command, as the program, its help and the completion of shells know it. */
struct Command
{
    const char* name;
    const char* summary; ///< one line of at most 66 characters
    QString text;        ///< what the help says before the options
    QVector<Argument> arguments;
    QVector<Option> options;
    QStringList examples; ///< words behind the command's name
    void (*run)(const CommandLine& commandLine);
    int mostArguments = 1 << 30;
};

/** The words behind the name of a command; --help, --version and --verbose belong to each. */
class CommandLine : public QCommandLineParser
{
public:
    explicit CommandLine(const Command& command);

    /** What --help prints. */
    QString help() const;

    /**
     * Reads the words; answers --help and --version.
     *
     * @return whether the command is to be run
     * @throw Failure for wrong use
     */
    bool read(const QStringList& words);

    /** The first argument, else "-", which stands for standard input. */
    QString fileName() const;

private:
    QString misuse(const QStringList& words) const;

    const Command& command;
};

/** The place of @p word among @p choices. @throw Failure where it is none of them */
int placeAmong(const QStringList& choices, const char* what, const QString& word);

/** The command of that name. @throw Failure where there is none */
const Command& commandOf(const QVector<Command>& commands, const QString& name);

/**
 * What may stand for the last of the words behind "orv", one word a line; ":files" for the name of a
 * file. The scripts for the completion of shells ask this.
 */
QStringList completions(const QVector<Command>& commands, const QStringList& words);
