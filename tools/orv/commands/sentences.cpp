#include "commands/commands.h"
#include "shell/commandline.h"
#include "shell/input.h"
#include "shell/output.h"

#include <core/parsers/sentencetokenizer.h>

#include <QJsonArray>
#include <QJsonObject>

int runSentences(const QStringList& arguments)
{
    CommandLine commandLine("sentences",
        "Cuts texts into sentences, one text per line of the file or of standard input.");
    commandLine.addOption("language", "The language of the texts, such as de_DE. Required.", "ISO");
    commandLine.addOption("json", "Writes one JSON object per text.");
    commandLine.addArgument("file", "A file of texts; - or none for standard input.", "[FILE]");
    commandLine.addExample("--language ja_JP texts.txt");
    commandLine.process(arguments, 1);
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
        } else {
            for (const QString& sentence : sentences) {
                print(onOneLine(sentence) + QLatin1Char('\n'));
            }
        }
    }
    return 0;
}
