#include "commands/commands.h"
#include "shell/commandline.h"
#include "shell/output.h"
#include "shell/suggestion.h"

#include <core/orvcore_version.h>

#include <QCoreApplication>
#include <QTextCodec>

#include <algorithm>

namespace {

struct Command
{
    const char* name;
    const char* summary;
    int (*run)(const QStringList& arguments);
};

constexpr Command commands[] = {
    {"check", "what authors hardly mean in prompts, sounds, tables, stores, settings", runCheck},
    {"checksum", "checksums of speech data files: update, verify, list, remove", runChecksum},
    {"genre", "radio genres, and what broadcasters call them", runGenre},
    {"inflate", "decompresses zlib and gzip streams", runInflate},
    {"json", "a value of a JSON file, by its path", runJson},
    {"language", "languages, their codes and what the engines support", runLanguage},
    {"prompt", "what prompts ask for: audio, files, text, off-board speech", runPrompt},
    {"sentences", "texts cut into sentences, with inline tags carried on", runSentences},
    {"sound", "the files of brand sounds", runSound},
    {"table", "the header and rows of table files", runTable},
};

QString usage()
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
           + QStringLiteral("\norv COMMAND --help tells more.\n"
                            "\nExit codes:\n"
                            "  0  done\n"
                            "  1  a negative finding\n"
                            "  2  wrong use or unreadable input\n");
}

int run(QStringList words)
{
    if (words.isEmpty()) {
        throw Failure{QStringLiteral("no command given (orv --help lists them)")};
    }
    const QString name = words.takeFirst();
    if (name == QLatin1String("--help") || name == QLatin1String("-h")) {
        print(usage());
        return 0;
    }
    if (name == QLatin1String("--version") || name == QLatin1String("-v")) {
        print(QStringLiteral("orv " ORVCORE_VERSION_STRING "\n"));
        return 0;
    }
    const auto* const command = std::find_if(std::begin(commands), std::end(commands),
        [&name](const Command& candidate) { return name == QLatin1String(candidate.name); });
    if (command == std::end(commands)) {
        QStringList names{QStringLiteral("--help"), QStringLiteral("--version")};
        for (const Command& candidate : commands) {
            names += QLatin1String(candidate.name);
        }
        throw Failure{unknown("command", name, names) + QStringLiteral(" (orv --help lists them)")};
    }
    return command->run(words);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("orv"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ORVCORE_VERSION_STRING));
    // Arguments and file names are UTF-8 in every locale, also in the plain one of build machines.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
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
