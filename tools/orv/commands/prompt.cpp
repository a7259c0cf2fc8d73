#include "commands/commands.h"
#include "commands/promptoptions.h"
#include "shell/commandline.h"
#include "shell/input.h"
#include "shell/output.h"

#include <core/parsers/sentencetokenizer.h>
#include <core/speech/speechcommon.h>

#include <QJsonArray>
#include <QJsonObject>

namespace {

QString modeName(PromptMode mode)
{
    static const char* const names[] = {"file", "audio", "text", "offboard"};
    return QLatin1String(names[mode]);
}

/** What is spoken of a prompt, in its own language where it names one. */
QStringList sentencesOf(const PromptData& prompt, Language language)
{
    if (prompt.mode == PromptFile || prompt.mode == PromptAudio) {
        return QStringList();
    }
    return SentenceTokenizer::split(
        prompt.text, prompt.language == InvalidLanguage ? language : prompt.language);
}

QJsonObject jsonObject(int line, const PromptData& prompt)
{
    const QString language = QString::fromLatin1(convertLanguageIdToIso(prompt.language));
    return {{QStringLiteral("line"), line}, {QStringLiteral("mode"), modeName(prompt.mode)},
        {QStringLiteral("text"), prompt.text},
        {QStringLiteral("language"), language.isEmpty() ? QJsonValue() : QJsonValue(language)},
        {QStringLiteral("genre"), prompt.genre},
        {QStringLiteral("mp3ToWavConversion"), prompt.isMp3ToWavConversionNeeded()}};
}

/** The prompt on a line, then what else is known of it on indented ones. */
void printPrompt(int line, const PromptData& prompt)
{
    const auto printDetail = [](const QString& name, const QString& value) {
        print(QStringLiteral("      %1  %2\n").arg(name, -8).arg(value));
    };
    print(QStringLiteral("%1  %2  %3\n")
              .arg(line, 4)
              .arg(modeName(prompt.mode), -8)
              .arg(onOneLine(prompt.text)));
    if (prompt.language != InvalidLanguage) {
        printDetail(QStringLiteral("language"),
            QString::fromLatin1(convertLanguageIdToIso(prompt.language)));
    }
    if (!prompt.genre.isEmpty()) {
        printDetail(QStringLiteral("genre"), onOneLine(prompt.genre));
    }
    if (prompt.isMp3ToWavConversionNeeded()) {
        printDetail(QStringLiteral("convert"), QStringLiteral("MP3 to WAV"));
    }
}

} // namespace

int runPrompt(const QStringList& arguments)
{
    CommandLine commandLine("prompt",
        "Shows what prompts ask for, one prompt per line of the file or of standard input. MP3 "
        "files\n"
        "that are there are marked for conversion to WAV. Brand sounds are read from\n"
        "share/tts/common.json beside the program's bin folder.");
    commandLine.addOption("context",
        "The caller's situation: general (without it), brandsound, a4a or a number.", "NAME|N",
        "general");
    commandLine.addOption(
        "brand", "The car brand whose sounds are played; TYX without it.", "NAME", "TYX");
    commandLine.addOption(
        "language", "Also cuts spoken text into sentences of this language.", "ISO");
    commandLine.addOption("json", "Writes one JSON object per prompt.");
    commandLine.addArgument("file", "A file of prompts; - or none for standard input.", "[FILE]");
    commandLine.addExample("--context a4a prompts.txt");
    commandLine.addExample("--language de_DE --json prompts.txt");
    commandLine.process(arguments, 1);
    const PromptContext context = contextOf(commandLine.value("context"));
    const bool wantsSentences = commandLine.isSet("language");
    const Language language = wantsSentences ? commandLine.language() : InvalidLanguage;

    LineReader reader(commandLine.fileName());
    loadSounds(commandLine);
    QString line;
    while (reader.readLine(line)) {
        const PromptData prompt = PromptData::parse(line, context);
        const QStringList sentences =
            wantsSentences ? sentencesOf(prompt, language) : QStringList();
        if (commandLine.isSet("json")) {
            QJsonObject object = jsonObject(reader.lineNumber(), prompt);
            if (wantsSentences) {
                object.insert(QStringLiteral("sentences"), QJsonArray::fromStringList(sentences));
            }
            printJson(object);
        } else {
            printPrompt(reader.lineNumber(), prompt);
            for (const QString& sentence : sentences) {
                print(QStringLiteral("      > %1\n").arg(onOneLine(sentence)));
            }
        }
    }
    return 0;
}
