#pragma once

#include "checks/languages.h"
#include "shell/commandline.h"
#include "shell/input.h"
#include "shell/listing.h"
#include "shell/output.h"
#include "text.h"

#include <core/speech/speechcommon.h>

// The commands of orv, one source file each. A negative result, such as an unknown code, raises the
// exit code to 1; wrong use and unreadable input are thrown as Failure, which raises it to 2.
extern const Command checkCommand;
extern const Command checksumCommand;
extern const Command genreCommand;
extern const Command inflateCommand;
extern const Command jsonCommand;
extern const Command languageCommand;
extern const Command promptCommand;
extern const Command sentencesCommand;
extern const Command soundCommand;
extern const Command tableCommand;

/** The names of contexts. */
QStringList contextNames();

// Options and arguments of several commands.
constexpr Option brandOption = {
    "brand", "The car brand whose sounds are played. The default is TYX.", "NAME", "TYX"};
constexpr Option contextOption = {"context",
    "The caller's situation: general (the default), brandsound, a4a or a number.", "NAME|N",
    "general", contextNames};
constexpr Option jsonOption = {"json", "Writes JSON objects, one per line."};
constexpr Option soundsOption = {"sounds",
    "The table of brand sounds. The default is share/tts/common.json beside the program's bin "
    "folder.",
    "FILE"};
constexpr Argument inputArgument = {
    "file", "[FILE]", "The file to read. Without it, or if it is -, standard input is read."};

/** The option "language" with a help text. */
constexpr Option languageOption(const char* text)
{
    return {"language", text, "ISO", "", languageCodes};
}

/** The language of the option "language". @throw Failure for an unknown ISO code */
Language languageOf(const CommandLine& commandLine);

/** The name of a context; its number if it has none. */
QString nameOf(PromptContext context);

/** The contexts of the option "context", each once. @throw Failure for an unknown name */
QVector<PromptContext> contextsOf(const CommandLine& commandLine);

/**
 * Loads the brand sounds that the options select. Writes a message if there are none.
 *
 * @throw Failure if there are none although the command or an option needs them
 */
QHash<QString, QString> loadSounds(const CommandLine& commandLine, bool isNeeded);
