#include "shell/commandline.h"

#include "shell/listing.h"
#include "shell/output.h"

#include <algorithm>

namespace {

constexpr Option commonOptions[] = {
    {"help", "Shows this help."},
    {"version", "Shows the version."},
    {"verbose", "Shows the library's log lines on standard error."},
};

QString dashed(const Option& option)
{
    return QLatin1String(option.name[1] == '\0' ? "-" : "--") + QLatin1String(option.name);
}

QStringList optionsOf(const Command& command)
{
    QStringList words;
    for (const Option& option : command.options) {
        words += dashed(option);
    }
    for (const Option& option : commonOptions) {
        words += dashed(option);
    }
    return words;
}

/** Repeats an option before each of its values: "--rds 1 2" becomes "--rds 1 --rds 2". */
QStringList spelledOut(const Command& command, const QStringList& words)
{
    QStringList result;
    QString several; // the option whose values are the words up to the next option
    for (const QString& word : words) {
        if (word.startsWith(u"--"_s)) {
            several.clear();
            for (const Option& option : command.options) {
                const bool takesSeveral = QString::fromUtf8(option.value).endsWith(u'…');
                if (takesSeveral && word.section(u'=', 0, 0) == dashed(option)) {
                    several = dashed(option);
                }
            }
        } else if (!several.isEmpty() && result.last() != several) {
            result += several;
        }
        result += word;
    }
    return result;
}

} // namespace

CommandLine::CommandLine(const Command& command)
    : command(command)
{
    setApplicationDescription(command.text);
    setOptionsAfterPositionalArgumentsMode(ParseAsOptions);
    const auto add = [this](const Option& option, const QStringList& names) {
        addOption(QCommandLineOption(names, QString::fromUtf8(option.text),
            QString::fromUtf8(option.value), QString::fromUtf8(option.otherwise)));
    };
    add(commonOptions[0], {u"h"_s, u"help"_s});
    add(commonOptions[1], {u"v"_s, u"version"_s});
    add(commonOptions[2], {u"verbose"_s});
    for (const Option& option : command.options) {
        add(option, {QLatin1String(option.name)});
    }
    for (const Argument& argument : command.arguments) {
        addPositionalArgument(QLatin1String(argument.name), QString::fromUtf8(argument.text),
            QString::fromUtf8(argument.syntax));
    }
}

QString CommandLine::help() const
{
    const QString name = u"orv %1 "_s.arg(QLatin1String(command.name));
    QString help = helpText(); // starts with the path of the program, without the command
    help.replace(0, help.indexOf(u"[options]"_s), u"Usage: "_s + name);
    help += u"\nExamples:\n"_s;
    for (const QString& example : command.examples) {
        help += u"  "_s + name + example + u'\n';
    }
    return help;
}

/** The message of Qt for wrong use, in the style of the other messages. */
QString CommandLine::misuse(const QStringList& words) const
{
    const QString name = unknownOptionNames().value(0);
    for (const QString& argument : words) {
        const QString word = argument.section(u'=', 0, 0);
        const bool isShort = argument.startsWith(u'-') && !argument.startsWith(u"--"_s)
                             && name.size() == 1 && argument.contains(name);
        if (!name.isEmpty() && (isShort || word == u"--"_s + name)) {
            return unknown("option", word, optionsOf(command));
        }
    }
    QString text = errorText(); // such as "Missing value after '--brand'."
    text.replace(u'\'', u'"').chop(1);
    return text.replace(0, 1, text.at(0).toLower());
}

bool CommandLine::read(const QStringList& words)
{
    if (!parse(QStringList(QCoreApplication::applicationName()) + spelledOut(command, words))) {
        throw Failure{misuse(words)};
    }
    if (isSet(u"help"_s) || isSet(u"version"_s)) {
        const QString version = u"orv %1\n"_s.arg(QCoreApplication::applicationVersion());
        print(isSet(u"help"_s) ? help() : version);
        return false;
    }
    failIf(positionalArguments().size() > command.mostArguments,
        u"too many arguments: \"%1\""_s.arg(positionalArguments().value(command.mostArguments)));
    writeJson(optionsOf(command).contains(u"--json"_s) && isSet(u"json"_s));
    showLog(isSet(u"verbose"_s));
    return true;
}

QString CommandLine::fileName() const
{
    return positionalArguments().value(0, u"-"_s);
}

int placeAmong(const QStringList& choices, const char* what, const QString& word)
{
    const int place = int(choices.indexOf(word));
    if (place < 0) {
        throw Failure{unknown(what, word, choices) + u" (%1)"_s.arg(choices.join(u", "_s))};
    }
    return place;
}

const Command& commandOf(const QVector<Command>& commands, const QString& name)
{
    const auto place = namesOf(commands).indexOf(name);
    if (place < 0) {
        throw Failure{
            unknown("command", name, completions(commands, {})) + u" (orv help lists them)"_s};
    }
    return commands[place];
}

QStringList completions(const QVector<Command>& commands, const QStringList& words)
{
    const auto filesOr = [](Choices choices) {
        return choices != nullptr ? choices() : QStringList(u":files"_s);
    };
    if (words.size() <= 1 || (words.size() == 2 && words[0] == u"help"_s)) {
        return QStringList(u"help"_s) + namesOf(commands)
               + (words.size() == 2 ? QStringList() : QStringList{u"--help"_s, u"--version"_s});
    }
    const Command& command = commandOf(commands, words[0]);
    const QString& last = words.last();
    const QStringList before = words.mid(1, words.size() - 2);
    for (const Option& option : command.options) {
        const QString name = dashed(option);
        if (option.value != nullptr && !before.isEmpty() && before.last() == name) {
            return filesOr(option.choices);
        }
        if (option.choices != nullptr
            && last.startsWith(name + u'=')) { // option and value in one word
            return (name + u'=' + option.choices().join(u'\n' + name + u'=')).split(u'\n');
        }
    }
    if (last.startsWith(u'-')) {
        return optionsOf(command);
    }
    if (command.arguments.isEmpty()) {
        return {};
    }
    CommandLine line(command);
    line.parse(words.mid(0, 1) + before);
    const auto place = std::min(line.positionalArguments().size(), command.arguments.size() - 1);
    return filesOr(command.arguments[place].choices);
}
