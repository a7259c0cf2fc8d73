#include "commands/commands.h"
#include "shell/failure.h"
#include "shell/input.h"
#include "shell/languages.h"
#include "shell/output.h"

#include <core/parsers/sentencetokenizer.h>

#include <QJsonArray>
#include <QJsonObject>

namespace {

int run(const CommandLine& commandLine)
{
    if (!commandLine.isSet("language")) {
        throw Failure{QStringLiteral("the option --language is missing")};
    }
    const Language language = commandLine.language();
    LineReader reader(commandLine.fileName());
    QString line;
    while (reader.readLine(line)) {
        const QStringList sentences = SentenceTokenizer::split(line, language);
        if (commandLine.isSet("json")) {
            printJson({{QStringLiteral("line"), reader.lineNumber()},
                {QStringLiteral("sentences"), QJsonArray::fromStringList(sentences)}});
            continue;
        }
        for (const QString& sentence : sentences) {
            print(onOneLine(sentence) + QLatin1Char('\n'));
        }
    }
    return 0;
}

} // namespace

Command sentencesCommand()
{
    return {"sentences", "cuts texts into sentences, with inline tags carried on",
        QStringLiteral("Cuts texts into sentences, one text per line of the file or of standard "
                       "input."),
        {{"file", "[FILE]", "A file of texts; - or none for standard input."}},
        {{"language", "The language of the texts, such as de_DE. Required.", "ISO", "",
             languageCodes},
            {"json", "Writes one JSON object per text."}},
        {QStringLiteral("--language ja_JP texts.txt")}, run, 1};
}
