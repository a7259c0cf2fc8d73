#include "commands/commands.h"
#include "shell/failure.h"
#include "shell/output.h"
#include "shell/words.h"

#include <core/orvcore_version.h>

#include <QCoreApplication>
#include <QTextCodec>

#include <clocale>

namespace {

QString usage(const QVector<Command>& commands)
{
    QString text =
        QStringLiteral("Usage: orv COMMAND [OPTION…] [ARGUMENT…]\n"
                       "Uses the speech core library from the command line.\n\nCommands:\n");
    for (const Command& command : commands) {
        text += QStringLiteral("  %1  %2\n")
                    .arg(QLatin1String(command.name), -9)
                    .arg(QLatin1String(command.summary));
    }
    return text
           + QStringLiteral("\norv help COMMAND tells more.\n"
                            "\nExit codes:\n"
                            "  0  done\n"
                            "  1  a negative finding\n"
                            "  2  wrong use or unreadable input\n");
}

const Command& commandOf(const QVector<Command>& commands, const QString& name)
{
    if (const Command* const command = findCommand(commands, name)) {
        return *command;
    }
    throw Failure{unknown("command", name, completions(commands, {}))
                  + QStringLiteral(" (orv help lists them)")};
}

int run(QStringList words)
{
    const QVector<Command> commands{checkCommand(), checksumCommand(), genreCommand(),
        inflateCommand(), jsonCommand(), languageCommand(), promptCommand(), sentencesCommand(),
        soundCommand(), tableCommand()};
    if (words.isEmpty()) {
        throw Failure{QStringLiteral("no command given (orv help lists them)")};
    }
    const QString name = words.takeFirst();
    const bool isHelp = name == QLatin1String("help");
    if (name == QLatin1String("complete")) { // asked by the completion scripts
        print(completions(commands, words).join(QLatin1Char('\n')) + QLatin1Char('\n'));
    } else if (isHelp && !words.isEmpty()) {
        print(CommandLine(commandOf(commands, words[0])).help());
    } else if (isHelp || name == QLatin1String("--help") || name == QLatin1String("-h")) {
        print(usage(commands));
    } else if (name == QLatin1String("--version") || name == QLatin1String("-v")) {
        print(QStringLiteral("orv " ORVCORE_VERSION_STRING "\n"));
    } else {
        const Command& command = commandOf(commands, name);
        CommandLine commandLine(command);
        commandLine.process(words);
        return command.run(commandLine);
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("orv"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ORVCORE_VERSION_STRING));
    // Arguments and file names are UTF-8 in every locale, also in the plain one of build machines.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    std::setlocale(LC_CTYPE, "C.UTF-8"); // for the widths of characters
    takeOverLog();

    int exitCode = 0;
    try {
        try {
            exitCode = run(QCoreApplication::arguments().mid(1));
        } catch (const Answered&) {
        }
        finishOutput();
    } catch (const Failure& failure) {
        printError(failure.reason);
        exitCode = 2;
    }
    return exitCode;
}
