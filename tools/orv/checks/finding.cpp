#include "checks/finding.h"

#include <QFileInfo>
#include <QStringList>

namespace {

constexpr RuleText rules[] = {
    {Rule::BareSoundId, "bare-sound-id", "warning", "a sound's id is read aloud instead of played"},
    {Rule::BlankInPath, "blank-in-path", "warning", "a blank in a path or language breaks the tag"},
    {Rule::BrokenInlineTag, "broken-inline-tag", "warning", "an inline tag is read aloud"},
    {Rule::CommentSpoken, "comment-spoken", "warning", "a line that starts with # is read aloud"},
    {Rule::EntitySpoken, "entity-spoken", "warning", "an entity such as &amp; is read aloud"},
    {Rule::InnerMarkup, "inner-markup", "warning", "tags within the text are read aloud"},
    {Rule::LanguageIgnored, "language-ignored", "note", "a language has no effect on this tag"},
    {Rule::MissingFile, "missing-file", "warning", "a file is missing"},
    {Rule::NearSoundId, "near-sound-id", "warning", "a text is nearly the id of a sound"},
    {Rule::NoOffboardMarkup, "no-offboard", "warning", "a file has no off-board markup"},
    {Rule::NothingSpoken, "nothing-spoken", "warning", "a prompt says nothing"},
    {Rule::NotUtf8, "not-utf8", "error", "a line is not valid UTF-8"},
    {Rule::NulInFile, "nul-in-file", "warning", "a file is read up to its first NUL only"},
    {Rule::OutsideMarkup, "outside-markup", "warning", "text beside the tags is dropped"},
    {Rule::UnknownForm, "unknown-form", "warning", "tags of no known form are read aloud"},
    {Rule::UnknownLanguage, "unknown-language", "warning", "no language has this code"},
    {Rule::UnreadableFile, "unreadable-file", "error", "a file cannot be read"},
    {Rule::WrongContext, "wrong-context", "warning", "tags are read aloud in this context"},
    {Rule::BadValue, "bad-value", "warning", "a value is missing, empty or of a wrong type"},
    {Rule::LostPath, "lost-path", "warning", "a path with \";\" is lost when the store is written"},
    {Rule::NotLoaded, "not-loaded", "error", "the library loads nothing from the file"},
    {Rule::Overwritten, "overwritten", "warning", "a later entry replaces an earlier one"},
    {Rule::Skipped, "skipped", "warning", "an element is skipped"},
    {Rule::UnreachableKey, "unreachable-key", "warning", "no path leads to a key with a slash"},
    {Rule::BadDeclaration, "bad-declaration", "warning",
        "a # line does not declare what it seems to"},
    {Rule::DroppedRow, "dropped-row", "warning", "a row is dropped"},
    {Rule::LateColumn, "late-column", "warning", "a column is repeated, or below the first row"},
    {Rule::LoneQuote, "lone-quote", "warning", "a quote without a partner is lost"},
    {Rule::NotATable, "not-a-table", "error", "no line declares a column"},
};

constexpr bool standAtTheirValue()
{
    int value = 0;
    for (const RuleText& row : rules) {
        if (int(row.rule) != value++) {
            return false;
        }
    }
    return value == int(Rule::RuleCount);
}
static_assert(standAtTheirValue(), "rules are found by their value");

} // namespace

const RuleText& textOf(Rule rule)
{
    return rules[int(rule)];
}

QStringList ruleNames()
{
    QStringList names;
    for (const RuleText& row : rules) {
        names += QLatin1String(row.name);
    }
    return names;
}

QString CheckOptions::onThisMachine(const QString& path) const
{
    return path.startsWith(u'/') ? root + path : path;
}

bool CheckOptions::isFile(const QString& path) const
{
    return QFileInfo(onThisMachine(path)).isFile();
}
