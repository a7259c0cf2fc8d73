#include "shell/commandline.h"

#include "shell/output.h"
#include "shell/suggestion.h"

#include <QCoreApplication>

namespace {

/** What Qt says of wrong use, in the form of all the other messages. */
QString misuse(
    const QCommandLineParser& parser, const QStringList& arguments, const QStringList& options)
{
    const QString name = parser.unknownOptionNames().value(0);
    for (const QString& argument : arguments) {
        const QString word = argument.section(QLatin1Char('='), 0, 0);
        const bool isShort = argument.startsWith(QLatin1Char('-'))
                             && !argument.startsWith(QLatin1String("--")) && name.size() == 1
                             && argument.contains(name);
        if (!name.isEmpty() && (isShort || word == QLatin1String("--") + name)) {
            return unknown("option", word, options);
        }
    }
    QString text = parser.errorText(); // such as "Missing value after '--brand'."
    text.replace(QLatin1Char('\''), QLatin1Char('"')).chop(1);
    return text.replace(0, 1, text.at(0).toLower());
}

} // namespace

CommandLine::CommandLine(const char* command, const char* description)
    : command(QString::fromUtf8(command))
{
    parser.setApplicationDescription(QString::fromUtf8(description));
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsOptions);
    parser.addOptions({{{QStringLiteral("h"), QStringLiteral("help")},
                           QStringLiteral("Shows this help.")},
        {{QStringLiteral("v"), QStringLiteral("version")}, QStringLiteral("Shows the version.")},
        {QStringLiteral("verbose"),
            QStringLiteral("Shows the library's log lines on standard error.")}});
}

void CommandLine::addOption(
    const char* name, const char* description, const char* valueName, const char* defaultValue)
{
    options += QLatin1String(name[1] == '\0' ? "-" : "--") + QString::fromUtf8(name);
    parser.addOption(QCommandLineOption(QString::fromUtf8(name), QString::fromUtf8(description),
        QString::fromUtf8(valueName), QString::fromUtf8(defaultValue)));
}

void CommandLine::addArgument(const char* name, const char* description, const char* syntax)
{
    parser.addPositionalArgument(
        QString::fromUtf8(name), QString::fromUtf8(description), QString::fromUtf8(syntax));
}

void CommandLine::addExample(const char* words)
{
    examples += QStringLiteral("  orv %1 %2\n").arg(command, QString::fromUtf8(words));
}

void CommandLine::process(const QStringList& arguments, int mostArguments)
{
    if (!parser.parse(QStringList(QCoreApplication::applicationName()) + arguments)) {
        throw Failure{misuse(parser, arguments, options)};
    }
    if (parser.isSet(QStringLiteral("help"))) {
        QString help = parser.helpText(); // names the program by its path, and no command
        help.replace(0, help.indexOf(QLatin1String("[options]")),
            QStringLiteral("Usage: orv %1 ").arg(command));
        print(help + QStringLiteral("\nExamples:\n") + examples);
        throw Answered();
    }
    if (parser.isSet(QStringLiteral("version"))) {
        print(QCoreApplication::applicationName() + QLatin1Char(' ')
              + QCoreApplication::applicationVersion() + QLatin1Char('\n'));
        throw Answered();
    }
    if (this->arguments().size() > mostArguments) {
        throw Failure{
            QStringLiteral("too many arguments: \"%1\"").arg(this->arguments().at(mostArguments))};
    }
    showLog(parser.isSet(QStringLiteral("verbose")));
}

bool CommandLine::isSet(const char* option) const
{
    return parser.isSet(QString::fromUtf8(option));
}

QString CommandLine::value(const char* option) const
{
    return parser.value(QString::fromUtf8(option));
}

QStringList CommandLine::values(const char* option) const
{
    return parser.values(QString::fromUtf8(option));
}

QStringList CommandLine::arguments() const
{
    return parser.positionalArguments();
}

QString CommandLine::fileName() const
{
    return arguments().value(0, QStringLiteral("-"));
}

Language CommandLine::language() const
{
    const QString code = value("language");
    const Language language = convertIsoToLanguageId(code.toUtf8());
    if (language == InvalidLanguage) {
        throw Failure{unknownLanguage(code) + QStringLiteral(" (orv language lists them)")};
    }
    return language;
}
