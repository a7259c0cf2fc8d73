#include "checks/finding.h"

#include <tuple>

constexpr RuleText ruleTexts[] = {
    {"bare-sound-id", "warning", "a sound's id is read aloud instead of played"},
    {"blank-in-path", "warning", "a blank in a path or language breaks the tag"},
    {"broken-inline-tag", "warning", "an inline tag is read aloud"},
    {"comment-spoken", "warning", "a line that starts with # is read aloud"},
    {"entity-spoken", "warning", "an entity such as &amp; is read aloud"},
    {"inner-markup", "warning", "tags within the text are read aloud"},
    {"language-ignored", "note", "a language has no effect on this tag"},
    {"missing-file", "warning", "a file is missing"},
    {"near-sound-id", "warning", "a text is nearly the id of a sound"},
    {"no-offboard", "warning", "a file has no off-board markup"},
    {"nothing-spoken", "warning", "a prompt says nothing"},
    {"not-utf8", "error", "a line is not valid UTF-8"},
    {"nul-in-file", "warning", "a file is read up to its first NUL only"},
    {"outside-markup", "warning", "text beside the tags is dropped"},
    {"unknown-form", "warning", "tags of no known form are read aloud"},
    {"unknown-language", "warning", "no language has this code"},
    {"unreadable-file", "error", "a file cannot be read"},
    {"wrong-context", "warning", "tags are read aloud in this context"},
    {"bad-value", "warning", "a value is missing, empty or of a wrong type"},
    {"lost-path", "warning", "a path with \";\" is lost when the store is written"},
    {"not-loaded", "error", "the library loads nothing from the file"},
    {"overwritten", "warning", "a later entry replaces an earlier one"},
    {"skipped", "warning", "an element is skipped"},
    {"unreachable-key", "warning", "no path leads to a key with a slash"},
    {"bad-declaration", "warning", "a # line does not declare what it seems to"},
    {"dropped-row", "warning", "a row is dropped"},
    {"late-column", "warning", "a column is repeated, or below the first row"},
    {"lone-quote", "warning", "a quote without a partner is lost"},
    {"not-a-table", "error", "no line declares a column"},
};

static_assert(ruleTexts[int(Rule::RuleCount) - 1].name != nullptr, "a row for each rule");

bool Finding::operator<(const Finding& other) const
{
    return std::tie(place.line, place.column, rule, text)
           < std::tie(other.place.line, other.place.column, other.rule, other.text);
}

QString CheckOptions::onThisMachine(const QString& path) const
{
    return path.startsWith(u'/') ? root + path : path;
}

bool CheckOptions::isFile(const QString& path) const
{
    return QFileInfo(onThisMachine(path)).isFile();
}
