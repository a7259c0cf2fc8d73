#pragma once

#include "checks/languages.h"
#include "shell/commandline.h"
#include "shell/listing.h"
#include "shell/output.h"
#include "text.h"

#include <core/speech/speechcommon.h>

#include <QHash>

// The commands of orv, one source file each. The exit code is 1 for a negative finding, such as an
// unknown code; wrong use and unreadable input are thrown as Failure, which is 2.
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

/** The names of the contexts that have one. */
QStringList contextNames();

// What several commands have.
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

/** The option "language", with what it is for. */
constexpr Option languageOption(const char* text)
{
    return {"language", text, "ISO", "", languageCodes};
}

/** The language of the option "language". @throw Failure for an unknown ISO code */
Language languageOf(const CommandLine& commandLine);

/** The name that the option "context" has for a value. */
QString nameOf(PromptContext context);

/** The contexts of the option "context", each once. @throw Failure for an unknown name */
QVector<PromptContext> contextsOf(const CommandLine& commandLine);

/**
 * Loads the brand sounds that the options name. A missing table is a remark on standard error, or a
 * failure where the command cannot do without it or an option asked for it.
 *
 * @throw Failure
 */
QHash<QString, QString> loadSounds(const CommandLine& commandLine, bool isNeeded);
