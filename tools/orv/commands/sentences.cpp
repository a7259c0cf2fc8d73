#include "commands/commands.h"
#include "shell/failure.h"
#include "shell/input.h"
#include "shell/languages.h"
#include "shell/output.h"
#include "shell/text.h"

#include <core/parsers/sentencetokenizer.h>

#include <QJsonArray>
#include <QJsonObject>

namespace {

int run(const CommandLine& commandLine)
{
    if (!commandLine.isSet("language")) {
        throw Failure{u"the option --language is missing"_s};
    }
    const Language language = commandLine.language();
    LineReader reader(commandLine.fileName());
    QString line;
    while (reader.readLine(line)) {
        const QStringList sentences = SentenceTokenizer::split(line, language);
        if (commandLine.isSet("json")) {
            printJson({{u"line"_s, reader.lineNumber()},
                {u"sentences"_s, QJsonArray::fromStringList(sentences)}});
            continue;
        }
        for (const QString& sentence : sentences) {
            print(onOneLine(sentence) + u'\n');
        }
    }
    return 0;
}

} // namespace

Command sentencesCommand()
{
    return {"sentences", "cuts texts into sentences, with inline tags carried on",
        u"Cuts texts into sentences, one text per line of the file or of standard "
        "input."_s,
        {{"file", "[FILE]", "A file of texts; - or none for standard input."}},
        {{"language", "The language of the texts, such as de_DE. Required.", "ISO", "",
             languageCodes},
            {"json", "Writes one JSON object per text."}},
        {u"--language ja_JP texts.txt"_s}, run, 1};
}
