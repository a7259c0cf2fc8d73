#include "shell/commandline.h"

#include "shell/failure.h"
#include "shell/languages.h"
#include "shell/output.h"
#include "shell/text.h"
#include "shell/words.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <algorithm>

namespace {

const QVector<Option> commonOptions = {
    {"help", "Shows this help."},
    {"version", "Shows the version."},
    {"verbose", "Shows the library's log lines on standard error."},
};

QString dashed(const Option& option)
{
    return QLatin1String(option.name[1] == '\0' ? "-" : "--") + QLatin1String(option.name);
}

/** The words with each option that takes several before each of them, as in "--rds 1 --rds 2". */
QStringList spelledOut(const Command& command, const QStringList& words)
{
    QStringList result;
    QString open;
    bool isFirst = false; // of the words behind the option
    for (const QString& word : words) {
        if (word.startsWith(u"--"_s)) {
            const QString name = word.section(u'=', 0, 0);
            isFirst = name == word;
            open.clear();
            for (const Option& option : command.options) {
                if (name == dashed(option) && QString::fromUtf8(option.value).endsWith(u'…')) {
                    open = name;
                }
            }
        } else if (!open.isEmpty() && !isFirst) {
            result += open;
        } else {
            isFirst = false;
        }
        result += word;
    }
    return result;
}

QStringList optionsOf(const Command& command)
{
    QStringList words;
    const QVector<Option> options = command.options + commonOptions;
    for (const Option& option : options) {
        words += dashed(option);
    }
    return words;
}

} // namespace

CommandLine::CommandLine(const Command& command)
    : command(command)
{
    parser.setApplicationDescription(command.text);
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsOptions);
    const QVector<Option> options = commonOptions + command.options;
    for (const Option& option : options) {
        QStringList names{QLatin1String(option.name)};
        if (names[0] == u"help"_s || names[0] == u"version"_s) {
            names.prepend(names.at(0).at(0)); // the two that have a short form
        }
        parser.addOption(QCommandLineOption(names, QString::fromUtf8(option.text),
            QString::fromUtf8(option.value), QString::fromUtf8(option.otherwise)));
    }
    for (const Argument& argument : command.arguments) {
        parser.addPositionalArgument(QLatin1String(argument.name), QString::fromUtf8(argument.text),
            QString::fromUtf8(argument.syntax));
    }
}

QString CommandLine::help() const
{
    QString help = parser.helpText(); // it names the program by its path, without the command
    help.replace(
        0, help.indexOf(u"[options]"_s), u"Usage: orv %1 "_s.arg(QLatin1String(command.name)));
    help += u"\nExamples:\n"_s;
    for (const QString& example : command.examples) {
        help += u"  orv %1 %2\n"_s.arg(QLatin1String(command.name), example);
    }
    return help;
}

/** What Qt says of wrong use, in the form of the other messages. */
QString CommandLine::misuse(const QStringList& words) const
{
    const QString name = parser.unknownOptionNames().value(0);
    for (const QString& argument : words) {
        const QString word = argument.section(u'=', 0, 0);
        const bool isShort = argument.startsWith(u'-') && !argument.startsWith(u"--"_s)
                             && name.size() == 1 && argument.contains(name);
        if (!name.isEmpty() && (isShort || word == u"--"_s + name)) {
            return unknown("option", word, optionsOf(command));
        }
    }
    QString text = parser.errorText(); // such as "Missing value after '--brand'."
    text.replace(u'\'', u'"').chop(1);
    return text.replace(0, 1, text.at(0).toLower());
}

void CommandLine::process(const QStringList& words)
{
    if (!parser.parse(
            QStringList(QCoreApplication::applicationName()) + spelledOut(command, words))) {
        throw Failure{misuse(words)};
    }
    if (isSet("help")) {
        print(help());
        throw Answered();
    }
    if (isSet("version")) {
        print(QCoreApplication::applicationName() + u' ' + QCoreApplication::applicationVersion()
              + u'\n');
        throw Answered();
    }
    if (arguments().size() > command.mostArguments) {
        throw Failure{u"too many arguments: \"%1\""_s.arg(arguments().at(command.mostArguments))};
    }
    showLog(isSet("verbose"));
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
    return arguments().value(0, u"-"_s);
}

Language CommandLine::language() const
{
    const QString code = value("language");
    const Language language = convertIsoToLanguageId(code.toUtf8());
    if (language == InvalidLanguage) {
        throw Failure{unknownLanguage(code) + u" (orv language lists them)"_s};
    }
    return language;
}

int placeAmong(const QStringList& choices, const char* what, const QString& word)
{
    const int place = choices.indexOf(word);
    if (place < 0) {
        throw Failure{unknown(what, word, choices) + u" (%1)"_s.arg(choices.join(u", "_s))};
    }
    return place;
}

const Command* findCommand(const QVector<Command>& commands, const QString& name)
{
    const auto* const command = std::find_if(commands.begin(), commands.end(),
        [&name](const Command& candidate) { return name == QLatin1String(candidate.name); });
    return command == commands.end() ? nullptr : command;
}

QStringList completions(const QVector<Command>& commands, const QStringList& words)
{
    const QStringList files{u":files"_s};
    const Command* const command = words.size() > 1 ? findCommand(commands, words[0]) : nullptr;
    if (command == nullptr) {
        QStringList names{u"help"_s};
        for (const Command& candidate : commands) {
            names += QLatin1String(candidate.name);
        }
        const bool isFirst = words.size() <= 1;
        return isFirst                ? names + QStringList{u"--help"_s, u"--version"_s}
               : words[0] == names[0] ? names
                                      : files;
    }
    for (const Option& option : command->options) { // --option=VALUE in one word
        const QString name = dashed(option) + u'=';
        if (words.last().startsWith(name) && option.choices != nullptr) {
            return option.choices().replaceInStrings(QRegularExpression(u"^"_s), name);
        }
    }
    int place = -1; // of the last word among the arguments
    const Option* open = nullptr;
    for (int i = 1; i < words.size(); ++i) {
        const bool isValue = open != nullptr;
        const Option* const opened = open;
        open = nullptr;
        for (const Option& option : command->options) {
            if (!isValue && option.value != nullptr && words[i] == dashed(option)) {
                open = &option;
            }
        }
        if (isValue && i + 1 == words.size()) {
            return opened->choices != nullptr ? opened->choices() : files;
        }
        place += isValue || words[i].startsWith(u'-') ? 0 : 1;
    }
    if (words.last().startsWith(u'-')) {
        return optionsOf(*command);
    }
    if (command->arguments.isEmpty()) {
        return {};
    }
    const Choices choices =
        command->arguments[std::min(place, command->arguments.size() - 1)].choices;
    return choices != nullptr ? choices() : files;
}
