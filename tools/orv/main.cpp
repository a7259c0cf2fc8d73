#include "commands/commands.h"

#include <core/orvcore_version.h>

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
#include <QTextCodec>
#endif

#include <clocale>

namespace {

QString usage(const QVector<Command>& commands)
{
    QString text = u"Usage: orv COMMAND [OPTION…] [ARGUMENT…]\n"
                   "Uses the speech core library from the command line.\n\nCommands:\n"_s;
    for (const Command& command : commands) {
        text += u"  %1  %2\n"_s.arg(QLatin1String(command.name), -9)
                    .arg(QLatin1String(command.summary));
    }
    return text
           + u"\norv help COMMAND shows the help of a command.\n"
             "\nExit codes:\n"
             "  0  done\n"
             "  1  a negative result, such as a finding or an unknown code\n"
             "  2  wrong use or unreadable input\n"_s;
}

void run(QStringList words)
{
    const QVector<Command> commands{checkCommand, checksumCommand, genreCommand, inflateCommand,
        jsonCommand, languageCommand, promptCommand, sentencesCommand, soundCommand, tableCommand};
    failIf(words.isEmpty(), u"no command given (orv help lists them)"_s);
    const QString name = words.takeFirst();
    const bool isHelp = name == u"help"_s;
    if (name == u"complete"_s) { // called by the completion scripts
        print(completions(commands, words).join(u'\n') + u'\n');
    } else if (isHelp && !words.isEmpty()) {
        print(CommandLine(commandOf(commands, words[0])).help());
    } else if (isHelp || name == u"--help"_s || name == u"-h"_s) {
        print(usage(commands));
    } else if (name == u"--version"_s || name == u"-v"_s) {
        print(QStringLiteral("orv " ORVCORE_VERSION_STRING "\n"));
    } else {
        const Command& command = commandOf(commands, name);
        CommandLine commandLine(command);
        if (commandLine.read(words)) {
            command.run(commandLine);
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"orv"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(ORVCORE_VERSION_STRING));
    // Arguments and file names are UTF-8 in every locale, even in "C".
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0) // Qt 6 always uses UTF-8
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
#endif
    std::setlocale(LC_CTYPE, "C.UTF-8"); // for the widths of characters

    try {
        run(QCoreApplication::arguments().mid(1));
        finishOutput();
    } catch (const Failure& failure) {
        printError(failure.reason, 2);
    }
    return raiseExitCode(0);
}
