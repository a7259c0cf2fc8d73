#include "commands/commands.h"

namespace {

int run(const CommandLine& commandLine)
{
    const QHash<QString, QString> sounds = loadSounds(commandLine, true);
    QStringList known = sounds.keys();
    known.sort();
    const QStringList words = commandLine.positionalArguments();
    const QStringList ids = words.isEmpty() ? known : words;
    int exitCode = 0;
    Listing listing(commandLine.isSet(u"json"_s));
    for (const QString& id : ids) {
        if (sounds.contains(id)) {
            listing.add({{"id", id, ""}, {"path", sounds[id], ""}});
        } else {
            printError(unknown("sound", id, known));
            exitCode = 1;
        }
    }
    listing.finish();
    return exitCode;
}

} // namespace

const Command soundCommand = {"sound", "shows the files of brand sounds",
    u"Shows the audio files of brand sounds: all of them, or those of the given "
    "ids."_s,
    {{"id", "[ID…]", "The id of a sound."}}, {brandOption, soundsOption, jsonOption},
    {u"--brand Nova welcome"_s}, run};
