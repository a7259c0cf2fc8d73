#include "commands/commands.h"
#include "shell/commandline.h"
#include "shell/output.h"
#include "shell/suggestion.h"

#include <QJsonObject>
#include <QJsonValue>

namespace {

// Languages have the values of one byte.
constexpr int valueCount = 256;

struct CodeFamily
{
    const char* name;
    const char* heading;
    QByteArray (*codeOf)(const Language&);
};

constexpr CodeFamily codeFamilies[] = {
    {"iso", "ISO", convertLanguageIdToIso},
    {"isoName", "ISO NAME", convertLanguageIdToIsoName},
    {"iso3", "ISO3", convertLanguageIdToIso3},
    {"ttsIso3", "TTS ISO3", convertTtsLanguageIdToIso3},
};

QString groupName(Language language)
{
    switch (languageGroup(language)) {
    case EnglishGroup:
        return QStringLiteral("English");
    case SpanishGroup:
        return QStringLiteral("Spanish");
    case FrenchGroup:
        return QStringLiteral("French");
    case ChineseGroup:
        return QStringLiteral("Chinese");
    case PortugueseGroup:
        return QStringLiteral("Portuguese");
    case NoLanguageGroup:
        break;
    }
    return QString();
}

struct EngineAnswer
{
    const char* name;
    const char* heading;
    bool (*answer)(Language);
};

constexpr EngineAnswer engineAnswers[] = {
    {"nlu", "NLU", [](Language language) { return isNluLanguage(language); }},
    {"prompter", "PROMPTER",
        [](Language language) { return !isInvalidPrompterLanguage(language); }},
    {"recognizer", "RECOGNIZER",
        [](Language language) { return !isInvalidRecognizerLanguage(language); }},
};

QStringList tableHeading()
{
    QStringList row{QStringLiteral("VALUE")};
    for (const CodeFamily& family : codeFamilies) {
        row += QLatin1String(family.heading);
    }
    row += QStringLiteral("GROUP");
    for (const EngineAnswer& engine : engineAnswers) {
        row += QLatin1String(engine.heading);
    }
    return row;
}

QStringList tableRow(Language language)
{
    QStringList row{QString::number(language)};
    for (const CodeFamily& family : codeFamilies) {
        row += QString::fromLatin1(family.codeOf(language));
    }
    row += groupName(language);
    for (const EngineAnswer& engine : engineAnswers) {
        row += engine.answer(language) ? QStringLiteral("yes") : QStringLiteral("no");
    }
    return row;
}

QJsonObject jsonObject(Language language)
{
    // What a language lacks is null.
    const auto textOrNull = [](const QString& text) {
        return text.isEmpty() ? QJsonValue() : QJsonValue(text);
    };
    QJsonObject object{{QStringLiteral("value"), int(language)},
        {QStringLiteral("group"), textOrNull(groupName(language))}};
    for (const CodeFamily& family : codeFamilies) {
        object.insert(
            QLatin1String(family.name), textOrNull(QString::fromLatin1(family.codeOf(language))));
    }
    for (const EngineAnswer& engine : engineAnswers) {
        object.insert(QLatin1String(engine.name), engine.answer(language));
    }
    return object;
}

bool isKnownAs(Language language, const QByteArray& code)
{
    if (code.isEmpty()) {
        return false; // what a language lacks is no code of it
    }
    for (const CodeFamily& family : codeFamilies) {
        if (family.codeOf(language) == code) {
            return true;
        }
    }
    return QByteArray::number(language) == code;
}

/** The languages with @p code in any family, or with that value. */
QVector<Language> languagesKnownAs(const QString& code)
{
    QVector<Language> languages;
    for (int value = 0; value < valueCount; ++value) {
        const auto language = Language(value);
        if (!convertLanguageIdToIso(language).isEmpty()
            && (code.isNull() || isKnownAs(language, code.toUtf8()))) {
            languages.append(language);
        }
    }
    return languages;
}

} // namespace

int runLanguage(const QStringList& arguments)
{
    CommandLine commandLine("language",
        "Shows languages: all of them, or those that the given codes or values stand for.");
    commandLine.addOption("json", "Writes one JSON object per language.");
    commandLine.addArgument(
        "code", "A code of any family, such as de_DE or deu-DEU, or a value.", "[CODE…]");
    commandLine.addExample("de_DE zh_TW");
    commandLine.addExample("--json");
    commandLine.process(arguments, arguments.size());

    int exitCode = 0;
    QVector<Language> languages;
    const QStringList codes = commandLine.arguments();
    if (codes.isEmpty()) {
        languages = languagesKnownAs(QString());
    }
    for (const QString& code : codes) {
        const QVector<Language> found = languagesKnownAs(code);
        if (found.isEmpty()) {
            printError(unknownLanguage(code));
            exitCode = 1;
        }
        languages += found;
    }

    if (commandLine.isSet("json")) {
        for (const Language language : qAsConst(languages)) {
            printJson(jsonObject(language));
        }
    } else if (!languages.isEmpty()) {
        QVector<QStringList> rows{tableHeading()};
        for (const Language language : qAsConst(languages)) {
            rows.append(tableRow(language));
        }
        printTable(rows);
    }
    return exitCode;
}
