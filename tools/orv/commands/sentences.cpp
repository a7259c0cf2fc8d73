#include "commands/commands.h"
#include "shell/input.h"

#include <core/parsers/sentencetokenizer.h>

namespace {

void run(const CommandLine& commandLine)
{
    failIf(!commandLine.isSet(u"language"_s), u"the option --language is missing"_s);
    const Language language = languageOf(commandLine);
    LineReader reader(commandLine.fileName());
    QString line;
    while (reader.readLine(line)) {
        printRecord({{"line", reader.lineNumber()},
            {"sentences", SentenceTokenizer::split(line, language), "%1\n"}});
    }
}

} // namespace

const Command sentencesCommand = {"sentences",
    "cuts texts into sentences, with inline tags carried on",
    u"Cuts texts into sentences, one text per line of the file."_s, {inputArgument},
    {languageOption("The language of the texts, such as de_DE. Required."), jsonOption},
    {u"--language ja_JP texts.txt"_s}, run, 1};
