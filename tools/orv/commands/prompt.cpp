#include "commands/commands.h"

#include <core/parsers/sentencetokenizer.h>

namespace {

/** The spoken sentences of a prompt, in its own language if it sets one. */
QStringList sentencesOf(const PromptData& prompt, Language language)
{
    if (prompt.mode == PromptFile || prompt.mode == PromptAudio) {
        return {};
    }
    return SentenceTokenizer::split(
        prompt.text, prompt.language == InvalidLanguage ? language : prompt.language);
}

/** For people, one line for the prompt and indented lines for the rest. */
Record recordOf(int line, const PromptData& prompt)
{
    static const char* const modes[] = {"file", "audio", "text", "offboard"};
    const bool isConverted = prompt.isMp3ToWavConversionNeeded();
    return {{"line", line, "%1  ", 4}, {"mode", QLatin1String(modes[prompt.mode]), "%1  ", -8},
        {"text", prompt.text, "%1\n"},
        {"language", orNull(codeOf(prompt.language)), "      language  %1\n"},
        {"genre", prompt.genre}, {nullptr, orNull(prompt.genre), "      genre     %1\n"},
        {"mp3ToWavConversion", isConverted},
        {nullptr, isConverted ? u"MP3 to WAV"_s : QVariant(), "      convert   %1\n"}};
}

void run(const CommandLine& commandLine)
{
    const QVector<PromptContext> contexts = contextsOf(commandLine);
    failIf(contexts.size() > 1, u"one --context at a time; orv check takes several"_s);
    const bool wantsSentences = commandLine.isSet(u"language"_s);
    const Language language = wantsSentences ? languageOf(commandLine) : InvalidLanguage;

    loadSounds(commandLine, false);
    LineReader reader(commandLine.fileName());
    QString line;
    while (reader.readLine(line)) {
        const PromptData prompt = PromptData::parse(line, contexts[0]);
        Record record = recordOf(reader.lineNumber, prompt);
        if (wantsSentences) {
            record += {"sentences", sentencesOf(prompt, language), "      > %1\n"};
        }
        printRecord(record);
    }
}

} // namespace

const Command promptCommand = {"prompt",
    "shows what prompts ask for: audio, files, text, off-board speech",
    u"Shows what prompts ask for. Each line of the file is one prompt. MP3 files that\n"
    "exist are marked for conversion to WAV."_s,
    {inputArgument},
    {contextOption, brandOption, soundsOption,
        languageOption("Also splits spoken text into sentences of this language."), jsonOption},
    {u"--context a4a prompts.txt"_s, u"--language de_DE --json prompts.txt"_s}, run, 1};
