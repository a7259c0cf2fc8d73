#include "commands/commands.h"
#include "shell/input.h"

#include <core/parsers/sentencetokenizer.h>

#include <QJsonArray>

namespace {

int run(const CommandLine& commandLine)
{
    if (!commandLine.isSet(u"language"_s)) {
        throw Failure{u"the option --language is missing"_s};
    }
    const Language language = languageOf(commandLine);
    LineReader reader(commandLine.fileName());
    QString line;
    while (reader.readLine(line)) {
        const QStringList sentences = SentenceTokenizer::split(line, language);
        printRecord(commandLine.isSet(u"json"_s),
            {{"line", reader.lineNumber()},
                {"sentences", QJsonArray::fromStringList(sentences), "%1\n"}});
    }
    return 0;
}

} // namespace

const Command sentencesCommand = {"sentences",
    "cuts texts into sentences, with inline tags carried on",
    u"Cuts texts into sentences, one text per line of the file."_s, {inputArgument},
    {languageOption("The language of the texts, such as de_DE. Required."), jsonOption},
    {u"--language ja_JP texts.txt"_s}, run, 1};
