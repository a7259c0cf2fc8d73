#include "commands/commands.h"

#include <core/parsers/sentencetokenizer.h>

namespace {

void run(const CommandLine& commandLine)
{
    failIf(!commandLine.isSet(u"language"_s), u"the option --language is missing"_s);
    const Language language = languageOf(commandLine);
    LineReader reader(commandLine.fileName());
    QString line;
    while (reader.readLine(line)) {
        printRecord({{"line", reader.lineNumber},
            {"sentences", SentenceTokenizer::split(line, language), "%1\n"}});
    }
}

} // namespace

const Command sentencesCommand = {"sentences",
    "splits texts into sentences, and repeats inline tags",
    u"Splits texts into sentences. Each line of the file is one text."_s, {inputArgument},
    {languageOption("The language of the texts, such as de_DE. Required."), jsonOption},
    {u"--language ja_JP texts.txt"_s}, run, 1};
