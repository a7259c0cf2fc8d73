#include "comparison.h"

#include <core/speech/speechcommon_p.h>

#include <QDebug>
#include <QRegularExpression>

namespace {

/** Whether to measure a form: MarkupRule has the same forms as the excluded rules. */
bool isMeasured(const PromptForm& form) { return form.rule != OffboardFileRule && form.rule != BrandSoundRule; }

PromptData parseByRegularExpressions(const QString& input, PromptContext context) {
    static const std::vector<QRegularExpression> patterns = [] {
        std::vector<QRegularExpression> result;
        for (const PromptForm& form : promptForms) {
            result.emplace_back(
                QString::fromUtf16(form.pattern.source), QRegularExpression::DotMatchesEverythingOption);
            result.back().optimize();
        }
        return result;
    }();
    auto pattern = patterns.begin();
    for (const PromptForm& form : promptForms) {
        if (isMeasured(form) && (form.rule != OffboardRule || context == A4AContext)) {
            const QRegularExpressionMatch match = pattern->match(input);
            if (match.hasMatch()) { return PromptData(match.captured(form.text), PromptText); }
        }
        ++pattern;
    }
    return PromptData(input, PromptText);
}

/** A path without blanks, or text with blanks. */
QString content(const PromptForm& form, int length) {
    const bool isPath = form.mode == PromptAudio || form.mode == PromptFile;
    return (isPath ? QStringLiteral("/speech/sounds") : QStringLiteral("Please turn left. "))
        .repeated(length)
        .left(length);
}

} // namespace

void addPrompts() {
    for (const PromptForm& form : promptForms) {
        if (!isMeasured(form)) { continue; }
        const PromptContext context = form.rule == OffboardRule ? A4AContext : GeneralContext;
        const QString name = form.written(QStringLiteral("TEXT"), QStringLiteral("ISO"), QStringLiteral("GENRE"));
        for (const int length : {50, 500, 5000}) {
            const QString input = form.written(content(form, length), QStringLiteral("de_DE"), QStringLiteral("news"));
            addComparison({"parse prompt", '`' + name.toStdString() + "` " + std::to_string(length),
                [input, context] { PromptData::parse(input, context); },
                {{"QRegularExpression", [input, context] { parseByRegularExpressions(input, context); },
                    form.language != 0 ? 0.45 : 0.35}},
                form.genre != 0 ? 3.0 : 2.0});
        }
    }
    const QString plain = QStringLiteral("Please turn left at the next crossing. ").repeated(12);
    for (const PromptContext context : {GeneralContext, BrandSoundContext, A4AContext}) {
        addComparison({"parse prompt", "plain text, context " + std::to_string(context),
            [plain, context] { PromptData::parse(plain, context); },
            {{"scan and copy",
                [plain] { return plain.contains(QLatin1Char('<')) ? PromptData() : PromptData(plain, PromptText); },
                context == BrandSoundContext ? 3.0 : 1.15}},
            0});
    }
    const QString wrong = QStringLiteral("<text>Please turn left at the next crossing.");
    addComparison({"parse prompt", "ending in the warning", [wrong] { PromptData::parse(wrong, GeneralContext); },
        {{"the warning",
            [wrong] { QMessageLogger("file", 1, "function").warning() << "Unable to parse given string: " << wrong; },
            1.4}}});
}
