#pragma once

#include <core/speech/language.h>

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

/** Ends the program with exit code 2 and its one line on standard error. */
struct Failure
{
    QString reason;
};

/** Thrown once --help or --version has been answered: ends the program with exit code 0. */
struct Answered
{};

/** The options and arguments of one command, --help, --version and --verbose among them. */
class CommandLine
{
public:
    CommandLine(const char* command, const char* description);

    void addOption(const char* name, const char* description, const char* valueName = nullptr,
        const char* defaultValue = "");
    void addArgument(const char* name, const char* description, const char* syntax);

    /** Words behind the command's name that the help is to show. */
    void addExample(const char* words);

    /** Reads the words; answers --help and --version. @throw Failure for wrong use, Answered */
    void process(const QStringList& arguments, int mostArguments);

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
    QString command;
    QString examples;
    QStringList options{
        QStringLiteral("--help"), QStringLiteral("--version"), QStringLiteral("--verbose")};
    QCommandLineParser parser;
};
