#include "commands/commands.h"

namespace {

QString groupName(Language language)
{
    static const char* const names[] = {"English", "Spanish", "French", "Chinese", "Portuguese"};
    const LanguageGroup group = languageGroup(language);
    return group == NoLanguageGroup ? QString() : QLatin1String(names[group]);
}

/** The codes of all families, empty if the language has none; then its value and its name. */
QStringList namesOf(Language language)
{
    QStringList names;
    for (QByteArray (*const codeIn)(const Language&) : {convertLanguageIdToIso,
             convertLanguageIdToIsoName, convertLanguageIdToIso3, convertTtsLanguageIdToIso3}) {
        names += QString::fromLatin1(codeIn(language));
    }
    return names + QStringList{QString::number(language), languageName(language)};
}

void run(const CommandLine& commandLine)
{
    const QStringList arguments = commandLine.positionalArguments();
    const QStringList words = arguments.isEmpty() ? QStringList{QString()} : arguments;
    const QVector<Language> languages = allLanguages();
    Listing listing;
    for (const QString& word : words) {
        bool isKnown = false;
        for (const Language language : languages) {
            const QStringList names = namesOf(language);
            if (!arguments.isEmpty() && (word.isEmpty() || !names.contains(word))) {
                continue;
            }
            isKnown = true;
            listing.add({{"value", int(language), "VALUE"}, {"name", names[5]},
                {"iso", orNull(names[0]), "ISO"}, {"isoName", orNull(names[1]), "ISO NAME"},
                {"iso3", orNull(names[2]), "ISO3"}, {"ttsIso3", orNull(names[3]), "TTS ISO3"},
                {"group", orNull(groupName(language)), "GROUP"},
                {"nlu", isNluLanguage(language), "NLU"},
                {"prompter", !isInvalidPrompterLanguage(language), "PROMPTER"},
                {"recognizer", !isInvalidRecognizerLanguage(language), "RECOGNIZER"}});
        }
        if (!isKnown) {
            printError(unknownLanguage(word), 1);
        }
    }
    listing.finish();
}

} // namespace

const Command languageCommand = {"language",
    "shows languages, their codes and what the engines support",
    u"Shows all languages, or those with the given codes, values or names."_s,
    {{"code", "[CODE…]", "A code such as de_DE or deu-DEU, a value, or a name such as German.",
        languageCodes}},
    {jsonOption}, {u"de_DE zh_TW"_s, u"--json"_s}, run};
