#include "checks/checks.h"
#include "shell/input.h"
#include "shell/suggestion.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <limits>
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

/**
 * What the library makes of a prompt, but without a file being read where one is named: which folder
 * stands for the target's root is for this program to say.
 */
PromptData parsed(QString prompt, PromptContext context)
{
    if (context != A4AContext) {
        return PromptData::parse(prompt, context);
    }
    // Below what is no folder there are no files.
    const QString attribute = QStringLiteral("path=\"");
    const QString nowhere = QStringLiteral("/dev/null/");
    PromptData result = PromptData::parse(prompt.replace(attribute, attribute + nowhere), context);
    const bool isPath = result.mode == PromptAudio || result.mode == PromptFile;
    if (isPath && result.text.startsWith(nowhere)) {
        result.text.remove(0, nowhere.size());
    }
    result.text.replace(attribute + nowhere, attribute); // markup that was taken for text or path
    return result;
}

bool isSpokenWhole(const QString& prompt, PromptContext context)
{
    const PromptData result = parsed(prompt, context);
    return result.mode == PromptText && result.text == prompt;
}

const QRegularExpression& attributeValue()
{
    static const QRegularExpression pattern(QStringLiteral("=\"[^\"]*\""));
    return pattern;
}

/** The tags of a prompt without what authors fill in. */
QString skeletonOf(const QString& prompt)
{
    static const QRegularExpression tag(QStringLiteral("<[^<>]*>?"));
    QString skeleton;
    for (auto match = tag.globalMatch(prompt); match.hasNext();) {
        skeleton += match.next().captured();
    }
    return skeleton.replace(attributeValue(), QStringLiteral("=\"\"")).toLower();
}

/** The form that a prompt resembles most, of those with @p tag in them. */
QString nearestForm(const QString& prompt, const char* tag)
{
    const QString skeleton = skeletonOf(prompt);
    // First by the start of a form, as the end may be what is missing.
    std::pair<int, int> least(std::numeric_limits<int>::max(), 0);
    QString nearest;
    for (const char* text : forms) {
        const QString form = QLatin1String(text);
        if (!form.contains(QLatin1String(tag))) {
            continue;
        }
        const QVector<int> distances = editDistances(skeleton, skeletonOf(form));
        const std::pair<int, int> distance(
            *std::min_element(distances.begin(), distances.end()), distances.last());
        if (distance < least) {
            least = distance;
            nearest = form;
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
    const QString form = nearestForm(prompt, "<");
    return QStringLiteral("nearest form: ")
           + (isSpokenWhole(form, context)
                   ? form + QStringLiteral(", which does not count in this context")
                   : form);
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
    const auto meansTheSame = [context, &meaning](QString part) {
        if (meaning.mode == PromptFile) { // and no part becomes a sound that stood beside it
            part.replace(QLatin1String("<text "), QLatin1String("<- "));
        }
        const PromptData other = parsed(part, context);
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

/** Whether a text holds what starts as an inline tag, but is none. */
bool holdsBrokenInlineTag(const QString& text)
{
    const QString opening = QStringLiteral("\\!\\");
    const QLatin1Char closing('\\');
    int end = 0;
    for (int at = 0; (at = text.indexOf(opening, end)) >= 0;) {
        const int begin = at + opening.size();
        end = begin;
        while (end < text.size() && !text[end].isSpace()) {
            ++end;
        }
        const QStringRef tag = text.midRef(begin, end - begin); // as far as a tag may reach
        const int equals = tag.indexOf(QLatin1Char('='), 1);
        const bool isAssignment = equals > 0 && equals < tag.size() - 2;
        if (end == text.size() || !tag.endsWith(closing) || tag.contains(opening)
            || !(isAssignment || tag == QLatin1String("rst\\"))) {
            return true;
        }
    }
    return false;
}

void checkInlineTags(Findings& findings, const Place& place, const QString& text)
{
    if (holdsBrokenInlineTag(text)) {
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

/** Checks markup that is understood, as @p meaning. */
void checkMarkup(Findings& findings, const Place& place, const QString& markup,
    PromptContext context, const PromptData& meaning)
{
    // Off-board text may be in markup of its own, with languages of its own.
    static const QRegularExpression languageCode(
        QStringLiteral(R"~(<(?:audio|file|text|phonetic) language="([^"]*)")~"));
    static const QRegularExpression offboardLanguage(QStringLiteral(R"~(<tts lang="([^"]*)"/>)~"));
    const bool isOffboard = meaning.mode == PromptOffboard;
    auto match = (isOffboard ? offboardLanguage : languageCode).globalMatch(markup);
    bool isLanguageKnown = true;
    while (match.hasNext()) {
        const QString code = match.next().captured(1);
        if (convertIsoToLanguageId(code.toUtf8()) == InvalidLanguage) {
            add(findings, place, unknownLanguage(code));
            isLanguageKnown = false;
        }
    }
    Outside outside = outsideOf(markup, context, meaning);
    if (isOffboard && !isLanguageKnown) {
        // Its tag means nothing, and so seems to be outside.
        const int tag = outside.before.lastIndexOf(QLatin1String("<tts "));
        outside.before = outside.before.left(tag).trimmed();
    }
    for (const QString& part : {outside.before, outside.behind}) {
        if (!part.isEmpty()) {
            add(findings, place,
                QStringLiteral("dropped, since it is outside the markup: \"%1\"").arg(part));
        }
    }
}

/** Checks a file of off-board markup that a prompt names. */
void checkOffboardFile(
    Findings& findings, int line, const QString& path, const CheckOptions& options)
{
    QFile file(onThisMachine(path, options));
    if (!QFileInfo(file).isFile()) {
        return; // which is told already
    }
    const Place place{line, QStringLiteral("in \"%1\": ").arg(path)};
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        add(findings, place, file.errorString());
        return;
    }
    const QByteArray content = file.readAll();
    if (!content.contains("<offboard")) {
        return; // of another kind
    }
    const QByteArray bytes = content.constData(); // up to the first NUL, as it is read
    if (bytes.size() < content.size()) {
        add(findings, place, QStringLiteral("lost from the first NUL on"));
    }
    QString markup;
    if (!decodeUtf8(bytes, markup)) {
        add(findings, place, QStringLiteral("not valid UTF-8"));
        return;
    }
    const PromptData meaning = parsed(markup, A4AContext);
    if (meaning.mode == PromptOffboard) {
        checkMarkup(findings, place, markup, A4AContext, meaning);
        checkSpokenText(findings, place, meaning);
    } else {
        add(findings, place,
            QStringLiteral("no off-board markup is found, nearest form: ")
                + nearestForm(markup, "<offboard"));
    }
}

void checkPrompt(Findings& findings, int line, const QString& prompt, const CheckOptions& options)
{
    const Place place{line, QString()};
    const PromptData meaning = parsed(prompt, options.context);
    if (meaning.mode == PromptText && meaning.text == prompt) {
        if (prompt.contains(QLatin1Char('<'))) {
            add(findings, place,
                QStringLiteral("spoken whole, markup included: ")
                    + whySpokenWhole(prompt, options.context));
        }
        checkInlineTags(findings, place, prompt);
        return;
    }
    checkMarkup(findings, place, prompt, options.context, meaning);
    if (meaning.mode == PromptText || meaning.mode == PromptOffboard) {
        checkSpokenText(findings, place, meaning);
        return;
    }
    checkFile(findings, line, meaning.text, options);
    if (options.context == A4AContext && meaning.mode == PromptFile) {
        checkOffboardFile(findings, line, meaning.text, options);
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
