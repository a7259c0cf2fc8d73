#pragma once

#include <core/speech/language.h>

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
    int (*run)(const CommandLine& commandLine);
    int mostArguments = 1 << 30;
};

/** Thrown once --help or --version has been answered: ends the program with exit code 0. */
struct Answered
{};

/** The words behind the name of a command; --help, --version and --verbose belong to each. */
class CommandLine
{
public:
    explicit CommandLine(const Command& command);

    /** What --help prints. */
    QString help() const;

    /** Reads the words; answers --help and --version. @throw Failure for wrong use, Answered */
    void process(const QStringList& words);

    bool isSet(const char* option) const;
    QString value(const char* option) const;
    QStringList values(const char* option) const;

    /** The arguments that are no options. */
    QStringList arguments() const;

    /** The first argument, else "-", which stands for standard input. */
    QString fileName() const;

    /** The language of the option "language". @throw Failure for an unknown ISO code */
    Language language() const;

private:
    QString misuse(const QStringList& words) const;

    const Command& command;
    QCommandLineParser parser;
};

/** The place of @p word among @p choices. @throw Failure where it is none of them */
int placeAmong(const QStringList& choices, const char* what, const QString& word);

/** The command of that name, else nullptr. */
const Command* findCommand(const QVector<Command>& commands, const QString& name);

/**
 * What may stand for the last of the words behind "orv", one word a line; ":files" for the name of a
 * file. The scripts for the completion of shells ask this.
 */
QStringList completions(const QVector<Command>& commands, const QStringList& words);
