#include "checks/finding.h"
#include "shell/input.h"
#include "shell/languages.h"
#include "shell/text.h"
#include "shell/words.h"

#include <QFile>
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
 * What the library makes of a prompt, without reading a file that it names: which folder stands for
 * the target's root is this program's choice.
 */
PromptData parsed(QString prompt, PromptContext context)
{
    if (context != A4AContext) {
        return PromptData::parse(prompt, context);
    }
    // There are no files below a device.
    const QString attribute = u"path=\""_s;
    const QString nowhere = u"/dev/null/"_s;
    PromptData result = PromptData::parse(prompt.replace(attribute, attribute + nowhere), context);
    const bool isPath = result.mode == PromptAudio || result.mode == PromptFile;
    if (isPath && result.text.startsWith(nowhere)) {
        result.text.remove(0, nowhere.size());
    }
    result.text.replace(attribute + nowhere, attribute); // also where markup became text or a path
    return result;
}

bool isSpokenWhole(const QString& prompt, PromptContext context)
{
    const PromptData result = parsed(prompt, context);
    return result.mode == PromptText && result.text == prompt;
}

const QRegularExpression& attributeValue()
{
    static const QRegularExpression pattern(u"=\"[^\"]*\""_s);
    return pattern;
}

/** The tags of a prompt without what authors fill in. */
QString skeletonOf(const QString& prompt)
{
    static const QRegularExpression tag(u"<[^<>]*>?"_s);
    QString skeleton;
    for (auto match = tag.globalMatch(prompt); match.hasNext();) {
        skeleton += match.next().captured();
    }
    return skeleton.replace(attributeValue(), u"=\"\""_s).toLower();
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
    static const QRegularExpression blank(u"\\s"_s, QRegularExpression::UseUnicodePropertiesOption);
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

/** A word, an attribute's value, a blank or a mark within tags; or the text between two tags. */
struct Token
{
    QString text;
    int begin;
    bool isValue;
    bool isBetween;
};

QVector<Token> tokensOf(const QString& markup)
{
    static const QRegularExpression tag(u"<[^<>]*>?"_s);
    static const QRegularExpression piece(u"\"[^\"]*\"|\\w+|\\s+|."_s);
    QVector<Token> tokens;
    int end = 0;
    for (auto tags = tag.globalMatch(markup); tags.hasNext();) {
        const QRegularExpressionMatch match = tags.next();
        if (!tokens.isEmpty() && match.capturedStart() > end) {
            tokens += {markup.mid(end, match.capturedStart() - end), end, false, true};
        }
        for (auto pieces = piece.globalMatch(match.captured()); pieces.hasNext();) {
            const QRegularExpressionMatch part = pieces.next();
            tokens += {part.captured(), match.capturedStart() + part.capturedStart(),
                part.captured().size() > 1 && part.captured().startsWith(u'"'), false};
        }
        end = match.capturedEnd();
    }
    return tokens;
}

/** Where a prompt first differs from a form, and what to write there. */
struct Difference
{
    int begin;
    QString advice;
};

Difference differenceFrom(const QString& form, const QString& prompt)
{
    const QVector<Token> wanted = tokensOf(form);
    const QVector<Token> found = tokensOf(prompt);
    int at = 0;
    for (int i = 0; i < wanted.size(); ++i) {
        const Token& token = wanted[i];
        if (at == found.size()) {
            QString rest;
            const QVector<Token> tail = wanted.mid(i);
            for (const Token& missing : tail) {
                rest += missing.isBetween ? QString() : missing.text;
            }
            return {prompt.size(), u"add %1 at the end"_s.arg(rest)};
        }
        const bool isSame = token.isBetween ? found[at].isBetween
                            : token.isValue ? found[at].isValue
                                            : found[at].text == token.text;
        if (!isSame && found[at].isBetween) {
            return {found[at].begin, u"leave out \"%1\" between the tags"_s.arg(found[at].text)};
        }
        if (!isSame && !token.isBetween) {
            const bool isExtra = at + 1 < found.size() && found[at + 1].text == token.text;
            return {found[at].begin,
                isExtra ? u"leave out \"%1\""_s.arg(found[at].text)
                        : u"write \"%1\" where \"%2\" stands"_s.arg(token.text, found[at].text)};
        }
        at += isSame ? 1 : 0; // text between tags may be empty
    }
    return {prompt.indexOf(u'<'), QString()};
}

Finding whySpokenWhole(int line, const QString& prompt, PromptContext context)
{
    const QString start = u"the tags will be read aloud: "_s;
    const int column = prompt.indexOf(u'<') + 1;
    static const QRegularExpression anyTag(u"</?[A-Za-z]"_s);
    if (!anyTag.match(prompt).hasMatch()) {
        return {line, column, Rule::UnknownForm,
            u"\"<\" will be read aloud: it does not start a tag"_s};
    }
    if (!isSpokenWhole(withoutBlanksInValues(prompt), context)) {
        static const QRegularExpression blankInValue(u"=\"[^\"]*?\\s"_s);
        const int blank = blankInValue.match(prompt).capturedEnd();
        return {line, blank > 0 ? blank : column, Rule::BlankInPath,
            start + u"a path or language holds a blank"_s};
    }
    const bool isGeneral = context == BrandSoundContext && !isSpokenWhole(prompt, GeneralContext);
    if (isGeneral || (context != A4AContext && !isSpokenWhole(prompt, A4AContext))) {
        static const QRegularExpression name(u"<(audio|file|text|phonetic|tts|offboard)"_s);
        const QRegularExpressionMatch tag = name.match(prompt);
        return {line, tag.capturedStart() + 1, Rule::WrongContext,
            start + tag.captured()
                + (isGeneral ? u"> does not work with --context brandsound"_s
                             : u"> works only with --context a4a"_s)};
    }
    const QString form = nearestForm(prompt, "<");
    const Difference difference = differenceFrom(form, prompt);
    QString text = start + u"the nearest form is "_s + form;
    if (!difference.advice.isEmpty()) {
        text += u"; "_s + difference.advice;
    }
    if (isSpokenWhole(form, context)) {
        text += isSpokenWhole(form, GeneralContext)
                    ? u"; it works only with --context a4a"_s
                    : u"; it does not work with --context brandsound"_s;
    }
    return {line, difference.begin + 1, Rule::UnknownForm, text};
}

/** The text in front of the markup and behind it, without which a prompt means the same. */
struct Outside
{
    QString before;
    QString behind;
    int behindBegin; ///< where the text behind begins, with its blanks
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
        if (meaning.mode == PromptFile) { // no part may become a sound that stood beside the file
            part.replace(u"<text "_s, u"<- "_s);
        }
        const PromptData other = parsed(part, context);
        const bool isWhole = other.mode == PromptText && other.text == part;
        return !isWhole && other.text == meaning.text && other.mode == meaning.mode
               && other.language == meaning.language && other.genre == meaning.genre;
    };
    // A part means the same as long as it holds the markup, so halving finds where that starts and
    // ends. A prompt of many brackets is not parsed for each of them.
    const QVector<int> opening = positionsOf(u'<', prompt);
    const auto behindBegin = std::partition_point(
        opening.begin(), opening.end(), [&](int at) { return meansTheSame(prompt.mid(at)); });
    const int begin = behindBegin == opening.begin() ? 0 : behindBegin[-1];
    const QVector<int> closing = positionsOf(u'>', prompt);
    const auto end = std::partition_point(closing.begin(), closing.end(),
        [&](int at) { return at < begin || !meansTheSame(prompt.mid(begin, at + 1 - begin)); });
    const int behind = end == closing.end() ? prompt.size() : *end + 1;
    return {prompt.left(begin).trimmed(), prompt.mid(behind).trimmed(), behind};
}

/** Collects what is found in a prompt, or in a file that it names. */
class Collector
{
public:
    Findings findings;
    int line = 0;
    QString inFile; ///< what a text about a named file starts with
    int fileColumn = 0;

    /** @p index is where it begins in the text that is checked. */
    void add(int index, Rule rule, const QString& text)
    {
        findings.append({line, inFile.isEmpty() ? index + 1 : fileColumn, rule, inFile + text});
    }
};

/** Where a text holds what starts as an inline tag, but is none; or -1. */
int brokenInlineTag(const QString& text)
{
    const QString opening = u"\\!\\"_s;
    const QLatin1Char closing('\\');
    int end = 0;
    for (int at = 0; (at = text.indexOf(opening, end)) >= 0;) {
        const int begin = at + opening.size();
        end = begin;
        while (end < text.size() && !text[end].isSpace()) {
            ++end;
        }
        const QStringRef tag = text.midRef(begin, end - begin); // as far as a tag may reach
        const int equals = tag.indexOf(u'=', 1);
        const bool isAssignment = equals > 0 && equals < tag.size() - 2;
        if (end == text.size() || !tag.endsWith(closing) || tag.contains(opening)
            || !(isAssignment || tag == u"rst\\"_s)) {
            return at;
        }
    }
    return -1;
}

void checkInlineTags(Collector& collector, const QString& markup, const QString& spoken)
{
    const int at = brokenInlineTag(spoken);
    if (at >= 0) {
        collector.add(std::max(markup.indexOf(spoken), 0) + at, Rule::BrokenInlineTag,
            u"not an inline tag, so it is read aloud; write \\!\\NAME=VALUE\\ and a space"_s);
    }
}

/** Checks a text that this machine speaks for sounds and entities. */
void checkSpokenWords(
    Collector& collector, const QString& markup, const QString& spoken, const CheckOptions& options)
{
    static const QRegularExpression entity(u"&(?:[A-Za-z][A-Za-z0-9]*|#[0-9]+|#x[0-9A-Fa-f]+);"_s);
    const int begin = std::max(markup.indexOf(spoken), 0);
    const int ampersand = spoken.indexOf(u'&'); // few texts have one
    const auto match = ampersand < 0 ? QRegularExpressionMatch() : entity.match(spoken, ampersand);
    if (match.hasMatch()) {
        collector.add(begin + match.capturedStart(), Rule::EntitySpoken,
            u"read aloud as it stands: \"%1\""_s.arg(match.captured()));
    }
    const QString word = spoken.trimmed();
    const int slip = word.size() < 4 ? 1 : word.size() > 8 ? 3 : 2;
    if (options.context != BrandSoundContext && options.soundIds.contains(word)) {
        collector.add(begin, Rule::BareSoundId,
            u"read aloud, not played: a sound is <text language=\"ISO\">%1</text>, "
            "or --context brandsound"_s.arg(word));
    } else if (const QString id = nearest(word, options.soundIds, slip); !id.isNull()) {
        collector.add(
            begin, Rule::NearSoundId, u"nearly the sound \"%1\", but read aloud"_s.arg(id));
    }
}

/** Checks what is spoken of markup that is understood. */
void checkSpokenText(Collector& collector, const QString& markup, const PromptData& prompt,
    const CheckOptions& options)
{
    // An off-board service has tags of its own, but not those of this library.
    static const QRegularExpression anyTag(u"</?[a-z]"_s);
    static const QRegularExpression offboardTag(u"</?(offboard|tts)\\b"_s);
    const bool isOffboard = prompt.mode == PromptOffboard;
    const int begin = std::max(markup.indexOf(prompt.text), 0);
    const auto tag = (isOffboard ? offboardTag : anyTag).match(prompt.text);
    if (prompt.text.trimmed().isEmpty()) {
        collector.add(begin, Rule::NothingSpoken, u"nothing is spoken"_s);
    } else if (tag.hasMatch()) {
        collector.add(begin + tag.capturedStart(), Rule::InnerMarkup,
            u"the tags within the text will be read aloud"_s);
    }
    if (!isOffboard) {
        checkSpokenWords(collector, markup, prompt.text, options);
    }
    checkInlineTags(collector, markup, prompt.text);
}

/** Checks the codes of languages. @return whether all are known */
bool checkLanguages(Collector& collector, const QString& markup, const PromptData& meaning,
    const CheckOptions& options)
{
    // Off-board text may have markup of its own, with languages of its own.
    static const QRegularExpression boardTag(
        uR"~(<(audio|file|text|phonetic) language="([^"]*)")~"_s);
    static const QRegularExpression offboardTag(uR"~(<(tts) lang="([^"]*)"/>)~"_s);
    const bool isOffboard = meaning.mode == PromptOffboard;
    bool areKnown = true;
    auto match = (isOffboard ? offboardTag : boardTag).globalMatch(markup);
    while (match.hasNext()) {
        const QRegularExpressionMatch tag = match.next();
        const QString code = tag.captured(2);
        // A brand sound is named by text with a language, whatever the language is.
        const bool mayName =
            tag.captured(1) == u"text"_s
            && (meaning.mode == PromptAudio || options.context == BrandSoundContext);
        if (convertIsoToLanguageId(code.toUtf8()) == InvalidLanguage) {
            collector.add(tag.capturedStart(2), Rule::UnknownLanguage, unknownLanguage(code));
            areKnown = false;
        } else if (!isOffboard && !mayName) {
            collector.add(tag.capturedStart(2), Rule::LanguageIgnored,
                u"\"%1\" has no effect: only <tts lang=\"%1\"/> sets a language"_s.arg(code));
        }
    }
    return areKnown;
}

/** Checks markup that is understood, as @p meaning. */
void checkMarkup(Collector& collector, const QString& markup, const PromptData& meaning,
    const CheckOptions& options)
{
    const bool areLanguagesKnown = checkLanguages(collector, markup, meaning, options);
    Outside outside = outsideOf(markup, options.context, meaning);
    if (meaning.mode == PromptOffboard && !areLanguagesKnown) {
        // The tag of an unknown language means nothing, and so seems to be outside.
        const int tag = outside.before.lastIndexOf(u"<tts "_s);
        outside.before = outside.before.left(tag).trimmed();
    }
    const auto report = [&](const QString& part, int from) {
        if (!part.isEmpty()) {
            collector.add(markup.indexOf(part, from), Rule::OutsideMarkup,
                u"dropped, because it is outside the tags: \"%1\""_s.arg(part));
        }
    };
    report(outside.before, 0);
    report(outside.behind, outside.behindBegin);
}

/** Checks a file of off-board markup that a prompt names. */
void checkOffboardFile(Collector& collector, const QString& path, const CheckOptions& options)
{
    QFile file(options.onThisMachine(path));
    collector.inFile = u"in \"%1\": "_s.arg(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        collector.add(0, Rule::UnreadableFile, file.errorString());
        return;
    }
    const QByteArray content = file.readAll();
    if (!content.contains("<offboard")) {
        return; // a file of another kind
    }
    const QByteArray bytes = content.constData(); // up to the first NUL, as the library reads it
    if (bytes.size() < content.size()) {
        collector.add(0, Rule::NulInFile, u"lost from the first NUL on"_s);
    }
    QString markup;
    if (!decodeUtf8(bytes, markup)) {
        collector.add(0, Rule::NotUtf8, u"not valid UTF-8"_s);
        return;
    }
    const PromptData meaning = parsed(markup, A4AContext);
    if (meaning.mode == PromptOffboard) {
        checkMarkup(collector, markup, meaning, options);
        checkSpokenText(collector, markup, meaning, options);
    } else {
        collector.add(0, Rule::NoOffboardMarkup,
            u"no off-board markup is found; the nearest form is "_s
                + nearestForm(markup, "<offboard"));
    }
}

void checkPrompt(Collector& collector, const QString& prompt, const CheckOptions& options)
{
    static const QRegularExpression comment(u"^\\s*#+(\\s|$)"_s);
    if (prompt.contains(u'#') && comment.match(prompt).hasMatch()) {
        collector.add(prompt.indexOf(u'#'), Rule::CommentSpoken,
            u"read aloud: a line of prompts is never a comment"_s);
    }
    const PromptData meaning = parsed(prompt, options.context);
    if (meaning.mode == PromptText && meaning.text == prompt) {
        if (prompt.contains(u'<')) {
            collector.findings += whySpokenWhole(collector.line, prompt, options.context);
        }
        checkSpokenWords(collector, prompt, prompt, options);
        checkInlineTags(collector, prompt, prompt);
        return;
    }
    checkMarkup(collector, prompt, meaning, options);
    if (meaning.mode == PromptText || meaning.mode == PromptOffboard) {
        checkSpokenText(collector, prompt, meaning, options);
        return;
    }
    const int path = std::max(prompt.indexOf(meaning.text), 0);
    if (!options.isFile(meaning.text)) {
        collector.add(path, Rule::MissingFile, u"no such file: \"%1\""_s.arg(meaning.text));
    } else if (options.context == A4AContext && meaning.mode == PromptFile) {
        collector.fileColumn = path + 1;
        checkOffboardFile(collector, meaning.text, options);
        collector.inFile.clear();
    }
}

} // namespace

Findings checkPrompts(const QByteArray& content, const CheckOptions& options)
{
    Collector collector;
    LineReader reader(content);
    QByteArray bytes;
    while (reader.readBytes(bytes)) {
        collector.line = reader.lineNumber();
        QString prompt;
        if (decodeUtf8(bytes, prompt)) {
            checkPrompt(collector, prompt, options);
        } else {
            collector.add(0, Rule::NotUtf8, u"not valid UTF-8"_s);
        }
    }
    return collector.findings;
}
