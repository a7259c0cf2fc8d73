#include "context.h"

#include "commandline.h"

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
