#include "commands/commands.h"
#include "commands/options.h"
#include "shell/failure.h"
#include "shell/input.h"
#include "shell/languages.h"
#include "shell/output.h"
#include "shell/text.h"

#include <core/parsers/sentencetokenizer.h>

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
    return {{u"line"_s, line}, {u"mode"_s, modeName(prompt.mode)}, {u"text"_s, prompt.text},
        {u"language"_s, language.isEmpty() ? QJsonValue() : QJsonValue(language)},
        {u"genre"_s, prompt.genre}, {u"mp3ToWavConversion"_s, prompt.isMp3ToWavConversionNeeded()}};
}

/** The prompt on a line, then what else is known of it on indented ones. */
void printPrompt(int line, const PromptData& prompt)
{
    const auto printDetail = [](const QString& name, const QString& value) {
        print(u"      %1  %2\n"_s.arg(name, -8).arg(value));
    };
    print(
        u"%1  %2  %3\n"_s.arg(line, 4).arg(modeName(prompt.mode), -8).arg(onOneLine(prompt.text)));
    if (prompt.language != InvalidLanguage) {
        printDetail(u"language"_s, QString::fromLatin1(convertLanguageIdToIso(prompt.language)));
    }
    if (!prompt.genre.isEmpty()) {
        printDetail(u"genre"_s, onOneLine(prompt.genre));
    }
    if (prompt.isMp3ToWavConversionNeeded()) {
        printDetail(u"convert"_s, u"MP3 to WAV"_s);
    }
}

int run(const CommandLine& commandLine)
{
    const QVector<PromptContext> contexts = contextsOf(commandLine);
    if (contexts.size() > 1) {
        throw Failure{u"one --context at a time; orv check takes several"_s};
    }
    const bool wantsSentences = commandLine.isSet("language");
    const Language language = wantsSentences ? commandLine.language() : InvalidLanguage;

    loadSounds(commandLine, false);
    LineReader reader(commandLine.fileName());
    QString line;
    while (reader.readLine(line)) {
        const PromptData prompt = PromptData::parse(line, contexts[0]);
        const QStringList sentences =
            wantsSentences ? sentencesOf(prompt, language) : QStringList();
        if (commandLine.isSet("json")) {
            QJsonObject object = jsonObject(reader.lineNumber(), prompt);
            if (wantsSentences) {
                object.insert(u"sentences"_s, QJsonArray::fromStringList(sentences));
            }
            printJson(object);
        } else {
            printPrompt(reader.lineNumber(), prompt);
            for (const QString& sentence : sentences) {
                print(u"      > %1\n"_s.arg(onOneLine(sentence)));
            }
        }
    }
    return 0;
}

} // namespace

Command promptCommand()
{
    return {"prompt", "shows what prompts ask for: audio, files, text, off-board speech",
        u"Shows what prompts ask for, one prompt per line of the file or of "
        "standard\ninput. MP3 files that exist are marked for conversion to WAV."_s,
        {{"file", "[FILE]", "A file of prompts; - or none for standard input."}},
        {contextOption, brandOption, soundsOption,
            {"language", "Also cuts spoken text into sentences of this language.", "ISO", "",
                languageCodes},
            {"json", "Writes one JSON object per prompt."}},
        {u"--context a4a prompts.txt"_s, u"--language de_DE --json prompts.txt"_s}, run, 1};
}
