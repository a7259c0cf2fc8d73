#include "commands/commands.h"

namespace {

void run(const CommandLine& commandLine)
{
    const QHash<QString, QString> sounds = loadSounds(commandLine, true);
    QStringList known = sounds.keys();
    known.sort();
    const QStringList words = commandLine.positionalArguments();
    const QStringList ids = words.isEmpty() ? known : words;
    Listing listing;
    for (const QString& id : ids) {
        if (sounds.contains(id)) {
            listing.add({{"id", id, ""}, {"path", sounds[id], ""}});
        } else {
            printError(unknown("sound", id, known), 1);
        }
    }
    listing.finish();
}

} // namespace

const Command soundCommand = {"sound", "shows the files of brand sounds",
    u"Shows the audio files of all brand sounds, or of those with the given ids."_s,
    {{"id", "[ID…]", "The id of a sound."}}, {brandOption, soundsOption, jsonOption},
    {u"--brand Nova welcome"_s}, run};
