#include "commands/commands.h"
#include "shell/languages.h"
#include "shell/listing.h"
#include "shell/output.h"
#include "shell/text.h"

namespace {

/** A text that languages may lack, which is null then. */
QJsonValue orNull(const QString& text)
{
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

QJsonValue groupName(Language language)
{
    static const char* const names[] = {"English", "Spanish", "French", "Chinese", "Portuguese"};
    const LanguageGroup group = languageGroup(language);
    return group == NoLanguageGroup ? QJsonValue() : QJsonValue(QLatin1String(names[group]));
}

QStringList codesOf(Language language)
{
    QStringList codes;
    for (QByteArray (*const codeOf)(const Language&) : {convertLanguageIdToIso,
             convertLanguageIdToIsoName, convertLanguageIdToIso3, convertTtsLanguageIdToIso3}) {
        codes += QString::fromLatin1(codeOf(language));
    }
    return codes;
}

/** The languages with @p word as a code of any family, as their value or as their name. */
QVector<Language> languagesKnownAs(const QString& word)
{
    QVector<Language> found;
    const QVector<Language> languages = allLanguages();
    for (const Language language : languages) {
        const QStringList words =
            codesOf(language) + QStringList{QString::number(language), languageName(language)};
        if (!word.isEmpty() && words.contains(word)) {
            found += language;
        }
    }
    return found;
}

int run(const CommandLine& commandLine)
{
    int exitCode = 0;
    const QStringList words = commandLine.arguments();
    QVector<Language> languages = words.isEmpty() ? allLanguages() : QVector<Language>();
    for (const QString& word : words) {
        const QVector<Language> found = languagesKnownAs(word);
        if (found.isEmpty()) {
            printError(unknownLanguage(word));
            exitCode = 1;
        }
        languages += found;
    }
    Listing listing(commandLine.isSet("json"),
        {{"value", "VALUE"}, {"name", "", false}, {"iso", "ISO"}, {"isoName", "ISO NAME"},
            {"iso3", "ISO3"}, {"ttsIso3", "TTS ISO3"}, {"group", "GROUP"}, {"nlu", "NLU"},
            {"prompter", "PROMPTER"}, {"recognizer", "RECOGNIZER"}});
    for (const Language language : qAsConst(languages)) {
        const QStringList codes = codesOf(language);
        listing.add({int(language), languageName(language), orNull(codes[0]), orNull(codes[1]),
            orNull(codes[2]), orNull(codes[3]), groupName(language), isNluLanguage(language),
            !isInvalidPrompterLanguage(language), !isInvalidRecognizerLanguage(language)});
    }
    listing.finish();
    return exitCode;
}

} // namespace

Command languageCommand()
{
    return {"language", "shows languages, their codes and what the engines support",
        u"Shows languages: all of them, or those that the given codes, values or "
        "names\nstand for."_s,
        {{"code", "[CODE…]",
            "A code of any family, such as de_DE or deu-DEU, a value, or a name such as German.",
            languageCodes}},
        {{"json", "Writes one JSON object per language."}}, {u"de_DE zh_TW"_s, u"--json"_s}, run};
}
