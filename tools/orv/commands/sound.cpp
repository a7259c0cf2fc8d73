#include "commands/commands.h"
#include "commands/options.h"
#include "shell/listing.h"
#include "shell/output.h"
#include "shell/text.h"
#include "shell/words.h"

namespace {

int run(const CommandLine& commandLine)
{
    const QHash<QString, QString> sounds = loadSounds(commandLine, true);
    QStringList known = sounds.keys();
    known.sort();
    const QStringList ids = commandLine.arguments().isEmpty() ? known : commandLine.arguments();
    int exitCode = 0;
    Listing listing(commandLine.isSet("json"), {{"id"}, {"path"}});
    for (const QString& id : ids) {
        if (sounds.contains(id)) {
            listing.add({id, sounds[id]});
        } else {
            printError(unknown("sound", id, known));
            exitCode = 1;
        }
    }
    listing.finish();
    return exitCode;
}

} // namespace

Command soundCommand()
{
    return {"sound", "shows the files of brand sounds",
        u"Shows the audio files of brand sounds: all of them, or those of the given "
        "ids."_s,
        {{"id", "[ID…]", "The id of a sound."}},
        {brandOption, soundsOption, {"json", "Writes one JSON object per sound."}},
        {u"--brand Nova welcome"_s}, run};
}
