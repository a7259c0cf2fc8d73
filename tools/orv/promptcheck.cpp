#include "checks.h"
#include "input.h"
#include "suggestion.h"

#include <QRegularExpression>

#include <algorithm>
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

bool isSpokenWhole(const QString& prompt, PromptContext context)
{
    const PromptData parsed = PromptData::parse(prompt, context);
    return parsed.mode == PromptText && parsed.text == prompt;
}

QString nearestForm(const QString& prompt, PromptContext context)
{
    const QString skeleton = skeletonOf(prompt);
    QString nearest;
    int least = std::numeric_limits<int>::max();
    for (const char* form : forms) {
        if (isSpokenWhole(QLatin1String(form), context)) {
            continue;
        }
        const int distance = editDistance(skeleton, skeletonOf(QLatin1String(form)));
        if (distance < least) {
            nearest = QLatin1String(form);
            least = distance;
        }
    }
    return nearest;
}

QString withoutBlanksInValues(const QString& prompt)
{
    static const QRegularExpression blank(
        QStringLiteral("\\s"), QRegularExpression::UseUnicodePropertiesOption);
    QString joined;
    int from = 0;
    for (auto match = attributeValue().globalMatch(prompt); match.hasNext();) {
        const QRegularExpressionMatch value = match.next();
        joined += prompt.midRef(from, value.capturedStart() - from);
        joined += value.captured().remove(blank);
        from = value.capturedEnd();
    }
    return joined + prompt.midRef(from);
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
    return QStringLiteral("nearest form: ") + nearestForm(prompt, context);
}

/** What a prompt would still mean the same without, in front and behind. */
struct Outside
{
    QString before;
    QString behind;
};

QVector<int> positionsOf(QChar character, const QString& text)
{
    QVector<int> positions;
    for (int at = -1; (at = text.indexOf(character, at + 1)) >= 0;) {
        positions.append(at);
    }
    return positions;
}

Outside outsideOf(const QString& prompt, PromptContext context, const PromptData& meaning)
{
    const auto meansTheSame = [context, &meaning](const QString& part) {
        const PromptData other = PromptData::parse(part, context);
        const bool isWhole = other.mode == PromptText && other.text == part;
        return !isWhole && other.text == meaning.text && other.mode == meaning.mode
               && other.language == meaning.language && other.genre == meaning.genre;
    };
    // The same as long as the markup is in the part, so that halving finds where it starts and
    // ends, and a prompt of many brackets is not parsed for each of them.
    const QVector<int> opening = positionsOf(QLatin1Char('<'), prompt);
    const auto behindBegin = std::partition_point(
        opening.begin(), opening.end(), [&](int at) { return meansTheSame(prompt.mid(at)); });
    const int begin = behindBegin == opening.begin() ? 0 : behindBegin[-1];
    const QVector<int> closing = positionsOf(QLatin1Char('>'), prompt);
    const auto end = std::partition_point(closing.begin(), closing.end(),
        [&](int at) { return at < begin || !meansTheSame(prompt.mid(begin, at + 1 - begin)); });
    return {prompt.left(begin).trimmed(),
        end == closing.end() ? QString() : prompt.mid(*end + 1).trimmed()};
}

void checkPrompt(Findings& findings, int line, const QString& prompt, const CheckOptions& options)
{
    const auto find = [&findings, line](const QString& reason) { findings.append({line, reason}); };
    const PromptData parsed = PromptData::parse(prompt, options.context);
    // Off-board markup of a file would have been read from this machine, whatever stands for root.
    const bool namesFile =
        options.context == A4AContext && !prompt.contains(QLatin1String("<offboard"));
    const PromptData named = namesFile ? PromptData::parse(prompt, GeneralContext) : parsed;
    if (named.mode == PromptAudio || named.mode == PromptFile) {
        checkFile(findings, line, named.text, options);
    }
    if (!prompt.contains(QLatin1Char('<'))) {
        return;
    }
    if (isSpokenWhole(prompt, options.context)) {
        find(QStringLiteral("spoken whole, markup included: ")
             + whySpokenWhole(prompt, options.context));
        return;
    }
    static const QRegularExpression languageCode(
        QStringLiteral(R"~(<[a-z]+ lang(?:uage)?="([^"]*)")~"));
    static const QRegularExpression tag(QStringLiteral("</?[a-z]"));
    bool areLanguagesKnown = true;
    for (auto match = languageCode.globalMatch(prompt); match.hasNext();) {
        const QString code = match.next().captured(1);
        if (convertIsoToLanguageId(code.toUtf8()) == InvalidLanguage) {
            find(unknownLanguage(code));
            areLanguagesKnown = false;
        }
    }
    // A language that nobody knows means nothing, so that its tag would seem to be outside.
    const Outside outside = areLanguagesKnown || parsed.mode != PromptOffboard
                                ? outsideOf(prompt, options.context, parsed)
                                : Outside();
    for (const QString& part : {outside.before, outside.behind}) {
        if (!part.isEmpty()) {
            find(QStringLiteral("dropped, since it is outside the markup: \"%1\"").arg(part));
        }
    }
    if (parsed.text.isEmpty()) {
        find(QStringLiteral("nothing is spoken"));
    } else if (parsed.mode == PromptText && parsed.text.contains(tag)) {
        find(QStringLiteral("markup within the text is spoken as it stands"));
    }
}

} // namespace

Findings checkPrompts(const QByteArray& content, const CheckOptions& options)
{
    Findings findings;
    int line = 0;
    const QList<QByteArray> lines = content.split('\n');
    for (QByteArray bytes : lines) {
        ++line;
        if (bytes.endsWith('\r')) {
            bytes.chop(1);
        }
        QString prompt;
        if (decodeUtf8(bytes, prompt)) {
            checkPrompt(findings, line, prompt, options);
        } else {
            findings.append({line, QStringLiteral("not valid UTF-8")});
        }
    }
    return findings;
}
