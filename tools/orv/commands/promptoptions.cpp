#include "commands/promptoptions.h"

#include "shell/commandline.h"
#include "shell/output.h"

namespace {

struct ContextName
{
    const char* name;
    PromptContext context;
};

constexpr ContextName contextNames[] = {
    {"general", GeneralContext},
    {"brandsound", BrandSoundContext},
    {"a4a", A4AContext},
};

} // namespace

PromptContext contextOf(const QString& text)
{
    for (const ContextName& row : contextNames) {
        if (text.compare(QLatin1String(row.name), Qt::CaseInsensitive) == 0) {
            return row.context;
        }
    }
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (!isNumber) {
        throw Failure{
            QStringLiteral("unknown context: \"%1\" (general, brandsound, a4a or a number)")
                .arg(text)};
    }
    return PromptContext(number);
}

void loadSounds(const CommandLine& commandLine)
{
    loadBrandSounds(commandLine.value("brand"));
    const QString failure = takeLoggedFailure();
    if (!failure.isEmpty()) {
        if (commandLine.isSet("brand")) {
            throw Failure{failure};
        }
        printError(QStringLiteral("no brand sounds are known: ") + failure);
    }
}
