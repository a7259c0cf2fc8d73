#include "commands/options.h"

#include "shell/failure.h"
#include "shell/input.h"
#include "shell/output.h"
#include "shell/text.h"

#include <QCoreApplication>

namespace {

QStringList contextNames()
{
    return {u"general"_s, u"brandsound"_s, u"a4a"_s};
}

PromptContext contextOf(const QString& text)
{
    constexpr PromptContext contexts[] = {GeneralContext, BrandSoundContext, A4AContext};
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber ? PromptContext(number)
                    : contexts[placeAmong(contextNames(), "context", text.toLower())];
}

} // namespace

const Option brandOption = {
    "brand", "The car brand whose sounds are played; TYX without it.", "NAME", "TYX"};

const Option contextOption = {"context",
    "The caller's situation: general (without it), brandsound, a4a or a number.", "NAME|N",
    "general", contextNames};

const Option soundsOption = {"sounds",
    "The table of brand sounds; without it share/tts/common.json beside the program's bin folder.",
    "FILE"};

QString nameOf(PromptContext context)
{
    return context == GeneralContext      ? contextNames().at(0)
           : context == BrandSoundContext ? contextNames().at(1)
           : context == A4AContext        ? contextNames().at(2)
                                          : QString::number(context);
}

QVector<PromptContext> contextsOf(const CommandLine& commandLine)
{
    QVector<PromptContext> contexts;
    const QStringList names = commandLine.values("context");
    for (const QString& name : names) {
        const PromptContext context = contextOf(name);
        if (!contexts.contains(context)) {
            contexts += context;
        }
    }
    return contexts;
}

QHash<QString, QString> loadSounds(const CommandLine& commandLine, bool isNeeded)
{
    QString file = commandLine.value("sounds");
    if (!commandLine.isSet("sounds")) {
        file = QCoreApplication::applicationDirPath() + u"/../share/tts/common.json"_s;
    }
    QHash<QString, QString> sounds = loadBrandSounds(commandLine.value("brand"), file);
    if (!sounds.isEmpty()) {
        return sounds;
    }
    QString reason;
    try {
        readJson(file);
        reason = file + u": no brand sounds in it"_s;
    } catch (const Failure& failure) {
        reason = failure.reason;
    }
    if (isNeeded || commandLine.isSet("brand") || commandLine.isSet("sounds")) {
        throw Failure{reason};
    }
    printError(u"no brand sounds are known: "_s + reason);
    return sounds;
}
