#include "commands/commands.h"
#include "shell/commandline.h"
#include "shell/output.h"

#include <core/speech/speechcommon.h>

#include <QJsonObject>

int runSound(const QStringList& arguments)
{
    CommandLine commandLine("sound",
        "Shows the audio files of brand sounds: all of them, or the given ones.\n"
        "They are read from share/tts/common.json beside the program's bin folder.");
    commandLine.addOption(
        "brand", "The car brand whose sounds are meant; TYX without it.", "NAME", "TYX");
    commandLine.addOption("json", "Writes one JSON object per sound.");
    commandLine.addArgument("id", "The id of a sound.", "[ID…]");
    commandLine.addExample("--brand Nova welcome");
    commandLine.process(arguments, arguments.size());

    const QHash<QString, QString> sounds = loadBrandSounds(commandLine.value("brand"));
    const QString failure = takeLoggedFailure();
    if (!failure.isEmpty()) {
        throw Failure{failure};
    }
    if (sounds.isEmpty()) {
        printError(QStringLiteral("share/tts/common.json holds no brand sounds"));
        return 1;
    }
    QStringList ids = commandLine.arguments();
    if (ids.isEmpty()) {
        ids = sounds.keys();
        ids.sort();
    }
    int exitCode = 0;
    QVector<QStringList> rows;
    for (const QString& id : qAsConst(ids)) {
        const auto sound = sounds.constFind(id);
        if (sound == sounds.constEnd()) {
            printError(QStringLiteral("unknown sound: \"%1\"").arg(id));
            exitCode = 1;
        } else if (commandLine.isSet("json")) {
            printJson({{QStringLiteral("id"), id}, {QStringLiteral("path"), *sound}});
        } else {
            rows.append({onOneLine(id), onOneLine(*sound)});
        }
    }
    printTable(rows);
    return exitCode;
}
