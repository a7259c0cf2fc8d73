#include "comparison.h"

#include <core/speech/speechcommon.h>

#include <QDebug>
#include <QRegularExpression>

namespace {

struct Form {
    const char* name;
    PromptContext context;
    double target;
    long strings;       // that are returned
    const char* markup; // with %1 for the text
};

constexpr Form forms[] = {
    {"audio", GeneralContext, 0.35, 1, "<audio path=\"%1\"/>"},
    {"audio, language", GeneralContext, 0.35, 1, "<audio language=\"de_DE\" path=\"%1\"/>"},
    {"file", GeneralContext, 0.35, 1, "<file path=\"%1\"/>"},
    {"file, language", GeneralContext, 0.35, 1, "<file language=\"de_DE\" path=\"%1\"/>"},
    {"text", GeneralContext, 0.35, 1, "<text>%1</text>"},
    {"text, language", GeneralContext, 0.35, 1, "<text language=\"de_DE\">%1</text>"},
    {"phonetic", GeneralContext, 0.35, 1, "<phonetic>%1</phonetic>"},
    {"phonetic, language", GeneralContext, 0.35, 1, "<phonetic language=\"de_DE\">%1</phonetic>"},
    {"offboard", A4AContext, 0.35, 1, "<offboard>%1</offboard>"},
    {"offboard, genre", A4AContext, 0.35, 2, "<offboard genre=\"news\">%1</offboard>"},
    {"tts offboard", A4AContext, 0.45, 1, "<tts lang=\"de_DE\"/><offboard>%1</offboard>"},
    {"tts offboard, genre", A4AContext, 0.45, 2, "<tts lang=\"de_DE\"/><offboard genre=\"news\">%1</offboard>"},
};

/** A pattern of the general rules (0) or of context 19 alone, and the capture that is the text. */
struct Pattern {
    int context;
    int text;
    QRegularExpression expression;
};

const std::vector<Pattern>& patterns()
{
    static const std::vector<Pattern> list = [] {
        const struct {
            int context, text;
            const char* pattern;
        } rows[] = {
            {19, 2, R"~(<tts lang="(\S+)"/><offboard>(.*)</offboard>)~"},
            {19, 3, R"~(<tts lang="(\S+)"/><offboard genre="(.*)">(.*)</offboard>)~"},
            {19, 1, R"~(<offboard>(.*)</offboard>)~"},
            {19, 2, R"~(<offboard genre="(.*)">(.*)</offboard>)~"},
            {0, 1, R"~(<audio path="(\S+)"/>)~"},
            {0, 2, R"~(<audio language="(\S+)" path="(\S+)"/>)~"},
            {0, 1, R"~(<file path="(\S+)"/>)~"},
            {0, 2, R"~(<file language="(\S+)" path="(\S+)"/>)~"},
            {0, 1, R"~(<text>(.*)</text>)~"},
            {0, 2, R"~(<text language="(\S+)">(.*)</text>)~"},
            {0, 1, R"~(<phonetic>(.*)</phonetic>)~"},
            {0, 2, R"~(<phonetic language="(\S+)">(.*)</phonetic>)~"},
        };
        std::vector<Pattern> result;
        for (const auto& row : rows) {
            result.push_back({row.context, row.text,
                QRegularExpression(QString::fromLatin1(row.pattern), QRegularExpression::DotMatchesEverythingOption)});
            result.back().expression.optimize();
        }
        return result;
    }();
    return list;
}

PromptData parseByRegularExpressions(const QString& input, PromptContext context)
{
    for (const Pattern& pattern : patterns()) {
        if (pattern.context == 0 || pattern.context == context) {
            const QRegularExpressionMatch match = pattern.expression.match(input);
            if (match.hasMatch()) { return PromptData(match.captured(pattern.text), PromptText); }
        }
    }
    return PromptData(input, PromptText);
}

/** A word, or words for what may hold blanks. */
QString content(const Form& form, int length)
{
    const bool isPath = form.markup[1] == 'a' || form.markup[1] == 'f';
    return (isPath ? QStringLiteral("/speech/sounds") : QStringLiteral("Please turn left. "))
        .repeated(length)
        .left(length);
}

} // namespace

void addPrompts()
{
    for (const Form& form : forms) {
        for (const int length : {50, 500, 5000}) {
            const QString input = QString::fromLatin1(form.markup).arg(content(form, length));
            addComparison({"parse prompt", form.name + (' ' + std::to_string(length)), form.target,
                timed([input, form] { PromptData::parse(input, form.context); }),
                {{"QRegularExpression", timed([input, form] { parseByRegularExpressions(input, form.context); })}},
                form.strings + 1});
        }
    }
    const QString plain = QStringLiteral("Please turn left at the next crossing. ").repeated(12);
    for (const PromptContext context : {GeneralContext, BrandSoundContext, A4AContext}) {
        addComparison({"parse prompt", "plain text, context " + std::to_string(context),
            context == BrandSoundContext ? 3.0 : 1.15, timed([plain, context] { PromptData::parse(plain, context); }),
            {{"scan and copy", timed([plain] {
                  return plain.contains(QLatin1Char('<')) ? PromptData() : PromptData(plain, PromptText);
              })}},
            0});
    }
    const QString wrong = QStringLiteral("<text>Please turn left at the next crossing.");
    addComparison(
        {"parse prompt", "ending in the warning", 1.4, timed([wrong] { PromptData::parse(wrong, GeneralContext); }),
            {{"the warning", timed([wrong] {
                  QMessageLogger("file", 1, "function").warning() << "Unable to parse given string: " << wrong;
              })}}});
}
