#include "checks.h"
#include "input.h"
#include "suggestion.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <utility>

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

/** How far a prompt is from the start of a form, as which it may be meant, then from all of it. */
std::pair<int, int> distanceBetween(const QString& prompt, const QString& form)
{
    const QVector<int> distances = editDistances(prompt, form);
    return {*std::min_element(distances.begin(), distances.end()), distances.last()};
}

QString nearestForm(const QString& prompt, PromptContext context)
{
    const QString skeleton = skeletonOf(prompt).toLower();
    const auto* const nearest = std::min_element(
        std::begin(forms), std::end(forms), [&skeleton](const char* a, const char* b) {
            return distanceBetween(skeleton, skeletonOf(QLatin1String(a)))
                   < distanceBetween(skeleton, skeletonOf(QLatin1String(b)));
        });
    const QString form = QLatin1String(*nearest);
    return isSpokenWhole(form, context)
               ? form + QStringLiteral(", which does not count in this context")
               : form;
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

/** Where a finding is: a line, and the file that is named there, if it is within that. */
struct Place
{
    int line;
    QString inFile;
};

void add(Findings& findings, const Place& place, const QString& reason)
{
    findings.append({place.line, place.inFile + reason});
}

void checkInlineTags(Findings& findings, const Place& place, const QString& text)
{
    static const QRegularExpression brokenTag(QStringLiteral(R"(\\!\\(?!\S+=\S+\\\s|rst\\\s))"));
    if (text.contains(brokenTag)) {
        add(findings, place,
            QStringLiteral(
                "an inline tag without its form or the blank behind it is spoken as it stands"));
    }
}

/** Checks what is spoken of markup that is understood. */
void checkSpokenText(Findings& findings, const Place& place, const PromptData& prompt)
{
    // An off-board service has markup of its own; but not this library's.
    static const QRegularExpression tag(QStringLiteral("</?[a-z]"));
    static const QRegularExpression offboardTag(QStringLiteral("</?(offboard|tts)\\b"));
    if (prompt.text.trimmed().isEmpty()) {
        add(findings, place, QStringLiteral("nothing is spoken"));
    } else if (prompt.text.contains(prompt.mode == PromptOffboard ? offboardTag : tag)) {
        add(findings, place, QStringLiteral("markup within the text is spoken as it stands"));
    }
    checkInlineTags(findings, place, prompt.text);
}

/** Checks markup that is understood. */
void checkMarkup(
    Findings& findings, const Place& place, const QString& markup, PromptContext context)
{
    const PromptData parsed = PromptData::parse(markup, context);
    static const QRegularExpression languageCode(
        QStringLiteral(R"~(<[a-z]+ lang(?:uage)?="([^"]*)")~"));
    bool areLanguagesKnown = true;
    for (auto match = languageCode.globalMatch(markup); match.hasNext();) {
        const QString code = match.next().captured(1);
        if (convertIsoToLanguageId(code.toUtf8()) == InvalidLanguage) {
            add(findings, place, unknownLanguage(code));
            areLanguagesKnown = false;
        }
    }
    // A language that nobody knows means nothing, so that its tag would seem to be outside.
    const Outside outside = areLanguagesKnown || parsed.mode != PromptOffboard
                                ? outsideOf(markup, context, parsed)
                                : Outside();
    for (const QString& part : {outside.before, outside.behind}) {
        if (!part.isEmpty()) {
            add(findings, place,
                QStringLiteral("dropped, since it is outside the markup: \"%1\"").arg(part));
        }
    }
}

/**
 * The file that a prompt names in the context A4A, where files come right after off-board markup;
 * without letting the library read it, as another folder may stand for the target's root.
 */
QString fileNamedBy(QString prompt)
{
    const QString rest = QString(prompt).remove(QStringLiteral("<file "));
    if (PromptData::parse(rest, A4AContext).mode == PromptOffboard) {
        return QString();
    }
    static const QRegularExpression soundTag(QStringLiteral("<(?:audio|text) "));
    const PromptData named = PromptData::parse(prompt.remove(soundTag), GeneralContext);
    return named.mode == PromptFile ? named.text : QString();
}

/** Checks a file of off-board markup that a prompt names. */
void checkOffboardFile(
    Findings& findings, int line, const QString& path, const CheckOptions& options)
{
    QFile file(onThisMachine(path, options));
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return;
    }
    const Place place{line, QStringLiteral("in \"%1\": ").arg(path)};
    const QByteArray content = file.readAll();
    QString markup;
    if (!decodeUtf8(content.constData(), markup)) { // up to the first NUL, as it is read
        add(findings, place, QStringLiteral("not valid UTF-8"));
        return;
    }
    if (!markup.contains(QLatin1String("<offboard"))) {
        return; // of another kind
    }
    const PromptData parsed = PromptData::parse(markup, A4AContext);
    if (parsed.mode == PromptOffboard) {
        checkMarkup(findings, place, markup, A4AContext);
        checkSpokenText(findings, place, parsed);
    } else {
        add(findings, place,
            QStringLiteral("no off-board markup is found: ") + whySpokenWhole(markup, A4AContext));
    }
}

void checkPrompt(Findings& findings, int line, const QString& prompt, const CheckOptions& options)
{
    const Place place{line, QString()};
    const QString file = options.context == A4AContext ? fileNamedBy(prompt) : QString();
    const PromptData parsed =
        file.isEmpty() ? PromptData::parse(prompt, options.context) : PromptData(file, PromptFile);
    if (parsed.mode == PromptText && parsed.text == prompt) {
        if (prompt.contains(QLatin1Char('<'))) {
            add(findings, place,
                QStringLiteral("spoken whole, markup included: ")
                    + whySpokenWhole(prompt, options.context));
        }
        checkInlineTags(findings, place, prompt);
        return;
    }
    checkMarkup(findings, place, prompt, options.context);
    if (parsed.mode == PromptText || parsed.mode == PromptOffboard) {
        checkSpokenText(findings, place, parsed);
        return;
    }
    checkFile(findings, line, parsed.text, options);
    if (!file.isEmpty()) {
        checkOffboardFile(findings, line, file, options);
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
