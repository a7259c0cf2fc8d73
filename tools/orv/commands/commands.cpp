#include "commands/commands.h"

namespace {

struct NamedContext
{
    const char* name;
    PromptContext value;
};

constexpr NamedContext contexts[] = {
    {"general", GeneralContext},
    {"brandsound", BrandSoundContext},
    {"a4a", A4AContext},
};

} // namespace

QStringList contextNames()
{
    return namesOf(contexts);
}

Language languageOf(const CommandLine& commandLine)
{
    const QString code = commandLine.value(u"language"_s);
    const Language language = convertIsoToLanguageId(code.toUtf8());
    if (language == InvalidLanguage) {
        throw Failure{unknownLanguage(code) + u" (orv language lists them)"_s};
    }
    return language;
}

QString nameOf(PromptContext context)
{
    for (const NamedContext& named : contexts) {
        if (named.value == context) {
            return QLatin1String(named.name);
        }
    }
    return QString::number(context);
}

QVector<PromptContext> contextsOf(const CommandLine& commandLine)
{
    QVector<PromptContext> result;
    const QStringList names = commandLine.values(u"context"_s);
    for (const QString& name : names) {
        bool isNumber = false;
        const int number = name.toInt(&isNumber);
        const PromptContext context =
            isNumber ? PromptContext(number)
                     : contexts[placeAmong(contextNames(), "context", name.toLower())].value;
        if (!result.contains(context)) {
            result += context;
        }
    }
    return result;
}

QHash<QString, QString> loadSounds(const CommandLine& commandLine, bool isNeeded)
{
    const bool isNamed = commandLine.isSet(u"sounds"_s);
    const QString file =
        isNamed ? commandLine.value(u"sounds"_s)
                : QCoreApplication::applicationDirPath() + u"/../share/tts/common.json"_s;
    QHash<QString, QString> sounds = loadBrandSounds(commandLine.value(u"brand"_s), file);
    if (!sounds.isEmpty()) {
        return sounds;
    }
    QString reason;
    try {
        Input input(file);
        input.readJson();
        reason = input.name + u": no brand sounds in it"_s;
    } catch (const Failure& failure) {
        reason = failure.reason;
    }
    failIf(isNeeded || isNamed || commandLine.isSet(u"brand"_s), reason);
    printError(u"no brand sounds are known: "_s + reason);
    return sounds;
}
