#include "checks/finding.h"
#include "checks/languages.h"

#include <algorithm>
#include <map>
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
 * Parses a prompt with the library, but without reading a file that the prompt names: this program
 * decides which folder stands for the target's root.
 */
PromptData parsed(QString prompt, PromptContext context)
{
    if (context != A4AContext) {
        return PromptData::parse(prompt, context);
    }
    // No file can exist below a device.
    const QString attribute = u"path=\""_s;
    const QString nowhere = u"/dev/null/"_s;
    PromptData result = PromptData::parse(prompt.replace(attribute, attribute + nowhere), context);
    const bool isPath = result.mode == PromptAudio || result.mode == PromptFile;
    if (isPath && result.text.startsWith(nowhere)) {
        result.text.remove(0, nowhere.size());
    }
    result.text.replace(attribute + nowhere, attribute); // also in attributes within a text or path
    return result;
}

bool isSpokenWhole(const QString& prompt, PromptContext context)
{
    const PromptData result = parsed(prompt, context);
    return result.mode == PromptText && result.text == prompt;
}

/** The tags of a prompt without the text and values that authors fill in. */
QString skeletonOf(QString prompt)
{
    static const QRegularExpression text(u"(^|(?<=>))[^<]+"_s);
    static const QRegularExpression value(u"=\"[^\"]*\""_s);
    return prompt.remove(text).replace(value, u"=\"\""_s).toLower();
}

/** The form that is most similar to a prompt, among those that contain @p tag. */
QString nearestForm(const QString& prompt, const char* tag)
{
    constexpr int enough = 200; // no form is longer
    const QString skeleton = skeletonOf(prompt).left(enough);
    // The start counts first, because the prompt may lack the end. The first of equal forms wins.
    std::map<std::pair<int, int>, QString> formsByDistance;
    for (const char* text : forms) {
        const QString form = QLatin1String(text);
        if (form.contains(QLatin1String(tag))) {
            const QVector<int> distances = editDistances(skeleton, skeletonOf(form));
            const int least = *std::min_element(distances.begin(), distances.end());
            formsByDistance.insert({{least, distances.last()}, form});
        }
    }
    return formsByDistance.begin()->second;
}

QString withoutBlanksInValues(const QString& prompt)
{
    static const QRegularExpression blank(u"\\s"_s, QRegularExpression::UseUnicodePropertiesOption);
    QStringList parts = prompt.split(u'"'); // values have a quote on both sides
    for (Size i = 1; i + 1 < parts.size(); ++i) {
        if (parts[i - 1].endsWith(u'=')) {
            parts[i++].remove(blank);
        }
    }
    return parts.join(u'"');
}

/** The words, attribute values, blanks and other characters from the first tag on. */
QRegularExpressionMatchIterator piecesOf(const QString& markup)
{
    static const QRegularExpression piece(u"\"[^\"]*\"|\\w+|\\s+|."_s);
    return piece.globalMatch(markup, markup.indexOf(u'<'));
}

/** Where a prompt first differs from a form, and what to write there; empty if nothing. */
std::pair<Size, QString> differenceFrom(const QString& form, const QString& prompt)
{
    QRegularExpressionMatchIterator wanted = piecesOf(form);
    QRegularExpressionMatchIterator found = piecesOf(prompt);
    while (wanted.hasNext()) {
        const QRegularExpressionMatch piece = wanted.next();
        const QString text = piece.captured();
        if (text == u"TEXT"_s) { // any text up to the next tag
            while (found.hasNext() && found.peekNext().captured() != u"<"_s) {
                found.next();
            }
            continue;
        }
        if (!found.hasNext()) {
            return {prompt.size(), u"; add %1 at the end"_s.arg(form.mid(piece.capturedStart()))};
        }
        const QRegularExpressionMatch match = found.next();
        const QString other = match.captured();
        const Size begin = match.capturedStart();
        const bool areValues = text[0] == u'"' && other[0] == u'"' && other.size() > 1;
        if (text == u"<"_s && other != text) {
            const QString between = prompt.mid(begin, prompt.indexOf(u'<', begin) - begin);
            return {begin, u"; leave out \"%1\" between the tags"_s.arg(between)};
        }
        if (other != text && !areValues) {
            const bool isExtra = found.hasNext() && found.peekNext().captured() == text;
            return {begin, isExtra ? u"; leave out \"%1\""_s.arg(other)
                                   : u"; write \"%1\" where \"%2\" stands"_s.arg(text, other)};
        }
    }
    return {prompt.indexOf(u'<'), QString()};
}

QVector<Size> positionsOf(QChar character, const QString& text)
{
    QVector<Size> positions;
    for (Size at = -1; (at = text.indexOf(character, at + 1)) >= 0;) {
        positions.append(at);
    }
    return positions;
}

/** Where the markup begins and ends; the text around it does not change what the prompt means. */
std::pair<Size, Size> extentOf(
    const QString& prompt, PromptContext context, const PromptData& meaning)
{
    const auto meansTheSame = [context, &meaning](QString part) {
        if (meaning.mode == PromptFile) { // a part must not be read as a brand sound
            part.replace(u"<text "_s, u"<- "_s);
        }
        const PromptData other = parsed(part, context);
        const bool isWhole = other.mode == PromptText && other.text == part;
        return !isWhole && other.text == meaning.text && other.mode == meaning.mode
               && other.language == meaning.language && other.genre == meaning.genre;
    };
    // A part means the same as long as it contains the markup, so binary search finds the start and
    // the end of the markup without parsing the prompt once for each bracket.
    const QVector<Size> opening = positionsOf(u'<', prompt);
    const auto behindBegin = std::partition_point(
        opening.begin(), opening.end(), [&](Size at) { return meansTheSame(prompt.mid(at)); });
    const Size begin = behindBegin == opening.begin() ? 0 : behindBegin[-1];
    const QVector<Size> closing = positionsOf(u'>', prompt);
    const auto end = std::partition_point(closing.begin(), closing.end(),
        [&](Size at) { return at < begin || !meansTheSame(prompt.mid(begin, at + 1 - begin)); });
    return {begin, end == closing.end() ? prompt.size() : *end + 1};
}

/** The first "\!\" that does not start a complete inline tag; -1 if there is none. */
Size brokenInlineTag(const QString& text)
{
    const QString opening = u"\\!\\"_s;
    const auto isBlank = [](QChar character) { return character.isSpace(); };
    Size end = 0;
    for (Size at = 0; (at = text.indexOf(opening, end)) >= 0;) {
        const Size begin = at + opening.size();
        end = Size(std::find_if(text.begin() + begin, text.end(), isBlank) - text.begin());
        const QString tag = text.mid(begin, end - begin); // up to the blank that ends a tag
        const auto equals = tag.indexOf(u'=', 1);
        const bool isAssignment = equals > 0 && equals < tag.size() - 2;
        if (end == text.size() || !tag.endsWith(u'\\') || tag.contains(opening)
            || !(isAssignment || tag == u"rst\\"_s)) {
            return at;
        }
    }
    return -1;
}

/** Checks prompts, and the files of off-board markup that they name. */
struct PromptCheck
{
    const CheckOptions& options;
    Findings findings = {};
    int line = 0;
    QString markup = {}; ///< the line, or the content of a file that it names
    PromptData meaning = {};
    QString inFile = {}; ///< the start of messages about a named file
    Size fileColumn = 0;

    Findings run(const QByteArray& content)
    {
        LineReader reader(content);
        QByteArray bytes;
        while (reader.readBytes(bytes)) {
            line = reader.lineNumber;
            if (decodeUtf8(bytes, markup)) {
                checkPrompt();
            } else {
                add(0, Rule::NotUtf8, u"not valid UTF-8"_s);
            }
        }
        return findings;
    }

    /** Adds a finding; @p index is its position in the markup. */
    void add(Size index, Rule rule, const QString& text)
    {
        const Size column = inFile.isEmpty() ? index + 1 : fileColumn;
        findings += {{line, column}, rule, inFile + text};
    }

    void checkPrompt()
    {
        static const QRegularExpression comment(u"^\\s*#+(\\s|$)"_s);
        if (markup.contains(u'#') && comment.match(markup).hasMatch()) {
            add(markup.indexOf(u'#'), Rule::CommentSpoken,
                u"read aloud: a line of prompts is never a comment"_s);
        }
        meaning = parsed(markup, options.context);
        if (meaning.mode == PromptText && meaning.text == markup) {
            if (markup.contains(u'<')) {
                tellWhySpokenWhole();
            }
            checkSpokenWords();
            return;
        }
        checkMarkup();
        const QString path = meaning.text;
        if (meaning.mode == PromptText || meaning.mode == PromptOffboard) {
            checkSpokenText();
        } else if (!options.isFile(path)) {
            add(spokenBegin(), Rule::MissingFile, u"no such file: \"%1\""_s.arg(path));
        } else if (options.context == A4AContext && meaning.mode == PromptFile) {
            fileColumn = spokenBegin() + 1;
            inFile = u"in \"%1\": "_s.arg(path);
            checkOffboardFile(path);
            inFile.clear();
        }
    }

    void tellWhySpokenWhole()
    {
        static const QRegularExpression anyTag(u"</?[A-Za-z]"_s);
        static const QRegularExpression blankInValue(u"=\"[^\"]*?\\s"_s);
        static const QRegularExpression name(u"<(audio|file|text|phonetic|tts|offboard)"_s);
        const PromptContext context = options.context;
        const QString start = u"the tags will be read aloud: "_s;
        const bool isGeneral =
            context == BrandSoundContext && !isSpokenWhole(markup, GeneralContext);
        if (!anyTag.match(markup).hasMatch()) {
            add(markup.indexOf(u'<'), Rule::UnknownForm,
                u"\"<\" will be read aloud: it does not start a tag"_s);
        } else if (!isSpokenWhole(withoutBlanksInValues(markup), context)) {
            const Size end =
                blankInValue.match(markup).capturedEnd(); // -1 for a blank that is not ASCII
            add(end > 0 ? end - 1 : markup.indexOf(u'<'), Rule::BlankInPath,
                start + u"a path or language holds a blank"_s);
        } else if (isGeneral || (context != A4AContext && !isSpokenWhole(markup, A4AContext))) {
            const QRegularExpressionMatch tag = name.match(markup);
            add(tag.capturedStart(), Rule::WrongContext,
                start + tag.captured()
                    + (isGeneral ? u"> does not work with --context brandsound"_s
                                 : u"> works only with --context a4a"_s));
        } else {
            const QString form = nearestForm(markup, "<");
            const auto [begin, advice] = differenceFrom(form, markup);
            const QString restriction = !isSpokenWhole(form, context) ? QString()
                                        : isSpokenWhole(form, GeneralContext)
                                            ? u"; it works only with --context a4a"_s
                                            : u"; it does not work with --context brandsound"_s;
            add(begin, Rule::UnknownForm,
                start + u"the nearest form is "_s + form + advice + restriction);
        }
    }

    void checkOffboardFile(const QString& path)
    {
        QFile file(options.onThisMachine(path));
        if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
            add(0, Rule::UnreadableFile, file.errorString());
            return;
        }
        const QByteArray content = file.readAll();
        if (!content.contains("<offboard")) {
            return; // not a file of off-board markup
        }
        const QByteArray bytes = content.constData(); // as the library reads it
        if (bytes.size() < content.size()) {
            add(0, Rule::NulInFile, u"lost from the first NUL on"_s);
        }
        if (!decodeUtf8(bytes, markup)) {
            add(0, Rule::NotUtf8, u"not valid UTF-8"_s);
            return;
        }
        meaning = parsed(markup, A4AContext);
        if (meaning.mode == PromptOffboard) {
            checkMarkup();
            checkSpokenText();
        } else {
            const QString form = nearestForm(markup, "<offboard");
            add(0, Rule::NoOffboardMarkup,
                u"no off-board markup is found; the nearest form is "_s + form);
        }
    }

    /** Checks markup that the library parses. */
    void checkMarkup()
    {
        const bool areLanguagesKnown = checkLanguages();
        const auto [begin, end] = extentOf(markup, options.context, meaning);
        QString before = markup.left(begin).trimmed();
        if (meaning.mode == PromptOffboard && !areLanguagesKnown) {
            // The tag of an unknown language has no effect, so it seems to be outside.
            before = before.left(before.lastIndexOf(u"<tts "_s)).trimmed();
        }
        checkOutside(before, 0);
        checkOutside(markup.mid(end).trimmed(), end);
    }

    void checkOutside(const QString& part, Size from)
    {
        if (!part.isEmpty()) {
            add(markup.indexOf(part, from), Rule::OutsideMarkup,
                u"dropped, because it is outside the tags: \"%1\""_s.arg(part));
        }
    }

    /** Checks the language codes. @return whether all are known */
    bool checkLanguages()
    {
        // Off-board text may contain markup of the service, with other language codes.
        static const QRegularExpression boardTag(
            uR"~(<(audio|file|text|phonetic) language="([^"]*)")~"_s);
        static const QRegularExpression offboardTag(uR"~(<(tts) lang="([^"]*)"/>)~"_s);
        const bool isOffboard = meaning.mode == PromptOffboard;
        bool areKnown = true;
        auto match = (isOffboard ? offboardTag : boardTag).globalMatch(markup);
        while (match.hasNext()) {
            const QRegularExpressionMatch tag = match.next();
            const QString code = tag.captured(2);
            // The markup of a brand sound needs a language, but any language will do.
            const bool mayHaveLanguage =
                tag.captured(1) == u"text"_s
                && (meaning.mode == PromptAudio || options.context == BrandSoundContext);
            if (convertIsoToLanguageId(code.toUtf8()) == InvalidLanguage) {
                add(tag.capturedStart(2), Rule::UnknownLanguage, unknownLanguage(code));
                areKnown = false;
            } else if (!isOffboard && !mayHaveLanguage) {
                add(tag.capturedStart(2), Rule::LanguageIgnored,
                    u"\"%1\" has no effect: only <tts lang=\"%1\"/> sets a language"_s.arg(code));
            }
        }
        return areKnown;
    }

    /** Checks the spoken text of markup that the library parses. */
    void checkSpokenText()
    {
        // Off-board text may contain tags of the service, but none of this library.
        static const QRegularExpression anyTag(u"</?[a-z]"_s);
        static const QRegularExpression offboardTag(u"</?(offboard|tts)\\b"_s);
        const bool isOffboard = meaning.mode == PromptOffboard;
        const auto tag = (isOffboard ? offboardTag : anyTag).match(meaning.text);
        if (meaning.text.trimmed().isEmpty()) {
            add(spokenBegin(), Rule::NothingSpoken, u"nothing is spoken"_s);
        } else if (tag.hasMatch()) {
            add(spokenBegin() + tag.capturedStart(), Rule::InnerMarkup,
                u"the tags within the text will be read aloud"_s);
        }
        checkSpokenWords();
    }

    /** Checks inline tags and, in text that is spoken on board, sounds and entities. */
    void checkSpokenWords()
    {
        const Size broken = brokenInlineTag(meaning.text);
        if (broken >= 0) {
            add(spokenBegin() + broken, Rule::BrokenInlineTag,
                u"not an inline tag, so it is read aloud; write \\!\\NAME=VALUE\\ and a space"_s);
        }
        if (meaning.mode == PromptOffboard) {
            return;
        }
        static const QRegularExpression entity(
            u"&(?:[A-Za-z][A-Za-z0-9]*|#[0-9]+|#x[0-9A-Fa-f]+);"_s);
        const QString& spoken = meaning.text;
        const auto match = // few texts have an "&", so most need no search
            spoken.contains(u'&') ? entity.match(spoken) : QRegularExpressionMatch();
        if (match.hasMatch()) {
            add(spokenBegin() + match.capturedStart(), Rule::EntitySpoken,
                u"read aloud as it stands: \"%1\""_s.arg(match.captured()));
        }
        const QString word = spoken.trimmed();
        const int slip = word.size() < 4 ? 1 : word.size() > 8 ? 3 : 2;
        if (options.context != BrandSoundContext && options.soundIds.contains(word)) {
            add(spokenBegin(), Rule::BareSoundId,
                u"read aloud, not played: a sound is <text language=\"ISO\">%1</text>, "
                "or --context brandsound"_s.arg(word));
        } else if (const QString id = nearest(word, options.soundIds, slip); !id.isNull()) {
            add(spokenBegin(), Rule::NearSoundId,
                u"nearly the sound \"%1\", but read aloud"_s.arg(id));
        }
    }

    Size spokenBegin() const
    {
        return std::max<Size>(markup.indexOf(meaning.text), 0);
    }
};

} // namespace

Findings checkPrompts(const QByteArray& content, const CheckOptions& options)
{
    return PromptCheck{options}.run(content);
}
