#include "checks.h"
#include "output.h"
#include "suggestion.h"

#include <QRegularExpression>

#include <limits>

namespace {

constexpr const char* forms[] = {
    R"(<audio path="PATH"/>)",
    R"(<audio language="ISO" path="PATH"/>)",
    R"(<file path="PATH"/>)",
    R"(<file language="ISO" path="PATH"/>)",
    "<text>TEXT</text>",
    R"(<text language="ISO">TEXT</text>)",
    "<phonetic>TEXT</phonetic>",
    R"(<phonetic language="ISO">TEXT</phonetic>)",
    "<offboard>TEXT</offboard>",
    R"(<offboard genre="GENRE">TEXT</offboard>)",
    R"(<tts lang="ISO"/><offboard>TEXT</offboard>)",
    R"(<tts lang="ISO"/><offboard genre="GENRE">TEXT</offboard>)",
};

QRegularExpression attributeValue()
{
    return QRegularExpression(QStringLiteral("=\"[^\"]*\""));
}

/** The tags of a prompt without what authors fill in. */
QString skeletonOf(const QString& prompt)
{
    static const QRegularExpression tag(QStringLiteral("<[^<>]*>?"));
    QString skeleton;
    for (auto match = tag.globalMatch(prompt); match.hasNext();) {
        skeleton += match.next().captured();
    }
    return skeleton.replace(attributeValue(), QStringLiteral("=\"\""));
}

QString nearestForm(const QString& prompt)
{
    const QString skeleton = skeletonOf(prompt);
    QString nearest;
    int least = std::numeric_limits<int>::max();
    for (const char* form : forms) {
        const int distance = editDistance(skeleton, skeletonOf(QLatin1String(form)));
        if (distance < least) {
            nearest = QLatin1String(form);
            least = distance;
        }
    }
    return nearest;
}

bool isSpokenWhole(const QString& prompt, PromptContext context)
{
    const PromptData parsed = PromptData::parse(prompt, context);
    return parsed.mode == PromptText && parsed.text == prompt;
}

QString withoutBlanksInValues(QString prompt)
{
    const QRegularExpression value = attributeValue();
    for (int at = 0;;) {
        const QRegularExpressionMatch match = value.match(prompt, at);
        if (!match.hasMatch()) {
            return prompt;
        }
        const QString joined = match.captured().remove(QLatin1Char(' '));
        prompt.replace(match.capturedStart(), match.capturedLength(), joined);
        at = match.capturedStart() + joined.size();
    }
}

QString whySpokenWhole(const QString& prompt, PromptContext context)
{
    if (!isSpokenWhole(withoutBlanksInValues(prompt), context)) {
        return QStringLiteral("a path or language holds a blank");
    }
    if (context == BrandSoundContext && !isSpokenWhole(prompt, GeneralContext)) {
        return QStringLiteral("this form does not count in the context brandsound");
    }
    if (context != A4AContext && !isSpokenWhole(prompt, A4AContext)) {
        return QStringLiteral("this form counts in the context a4a alone");
    }
    return QStringLiteral("nearest form: ") + nearestForm(prompt);
}

/** What a prompt would still mean the same without, in front and behind. */
struct Outside
{
    QString before;
    QString behind;
};

Outside outsideOf(const QString& prompt, PromptContext context, const PromptData& meaning)
{
    const auto meansTheSame = [context, &meaning](const QString& part) {
        const PromptData other = PromptData::parse(part, context);
        return other.text == meaning.text && other.mode == meaning.mode
               && other.language == meaning.language && other.genre == meaning.genre;
    };
    int begin = 0;
    for (int at = 0; (at = prompt.indexOf(QLatin1Char('<'), at + 1)) >= 0;) {
        begin = meansTheSame(prompt.mid(at)) ? at : begin;
    }
    int end = prompt.size();
    for (int at = end; at > begin && (at = prompt.lastIndexOf(QLatin1Char('>'), at - 1)) > begin;) {
        end = meansTheSame(prompt.mid(begin, at + 1 - begin)) ? at + 1 : end;
    }
    return {prompt.left(begin).trimmed(), prompt.mid(end).trimmed()};
}

void checkPrompt(Findings& findings, int line, const QString& prompt, const CheckOptions& options)
{
    const auto find = [&findings, line](const QString& reason) { findings.append({line, reason}); };
    const PromptData parsed = PromptData::parse(prompt, options.context);
    if (parsed.mode == PromptAudio || parsed.mode == PromptFile) {
        checkFile(findings, line, parsed.text, options);
    }
    if (!prompt.contains(QLatin1Char('<'))) {
        return;
    }
    if (isSpokenWhole(prompt, options.context)) {
        find(QStringLiteral("spoken whole, markup included: ")
             + whySpokenWhole(prompt, options.context));
        return;
    }
    static const QRegularExpression languageCode(QStringLiteral(" lang(?:uage)?=\"(\\S+?)\""));
    bool areLanguagesKnown = true;
    for (auto match = languageCode.globalMatch(prompt); match.hasNext();) {
        const QString code = match.next().captured(1);
        if (convertIsoToLanguageId(code.toUtf8()) == InvalidLanguage) {
            find(unknownLanguage(code));
            areLanguagesKnown = false;
        }
    }
    // A language that nobody knows means nothing, so that its tag would seem to be outside.
    const Outside outside =
        areLanguagesKnown ? outsideOf(prompt, options.context, parsed) : Outside();
    for (const QString& part : {outside.before, outside.behind}) {
        if (!part.isEmpty()) {
            find(QStringLiteral("dropped, since it is outside the markup: \"%1\"").arg(part));
        }
    }
    if (parsed.text.isEmpty()) {
        find(QStringLiteral("nothing is spoken"));
    } else if (parsed.mode == PromptText && parsed.text.contains(QLatin1Char('<'))) {
        find(QStringLiteral("markup within the text is spoken as it stands"));
    }
}

} // namespace

Findings checkPrompts(const QByteArray& content, const CheckOptions& options)
{
    loadBrandSounds(options.brand);
    Findings findings;
    int line = 0;
    const QList<QByteArray> lines = content.split('\n');
    for (QByteArray bytes : lines) {
        ++line;
        if (bytes.endsWith('\r')) {
            bytes.chop(1);
        }
        const QString prompt = QString::fromUtf8(bytes.constData(), bytes.size());
        if (prompt.toUtf8() == bytes) {
            checkPrompt(findings, line, prompt, options);
        } else {
            findings.append({line, QStringLiteral("not valid UTF-8")});
        }
    }
    return findings;
}
