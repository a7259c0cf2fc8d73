#pragma once

#include "shell/input.h"

#include <core/speech/speechcommon.h>

/** The rules, in the order of ruleTexts. */
enum class Rule
{
    BareSoundId,
    BlankInPath,
    BrokenInlineTag,
    CommentSpoken,
    EntitySpoken,
    InnerMarkup,
    LanguageIgnored,
    MissingFile,
    NearSoundId,
    NoOffboardMarkup,
    NothingSpoken,
    NotUtf8,
    NulInFile,
    OutsideMarkup,
    UnknownForm,
    UnknownLanguage,
    UnreadableFile,
    WrongContext,
    BadValue,
    LostPath,
    NotLoaded,
    Overwritten,
    Skipped,
    UnreachableKey,
    BadDeclaration,
    DroppedRow,
    LateColumn,
    LoneQuote,
    NotATable,
    RuleCount,
};

/** How a rule is presented to users. */
struct RuleText
{
    const char* name;     ///< short and stable
    const char* severity; ///< error, warning or note
    const char* text;     ///< one line of at most 54 characters
};

/** Indexed by Rule. */
extern const RuleText ruleTexts[int(Rule::RuleCount)];

/** A mistake that the library does not report. */
struct Finding
{
    Place place;
    Rule rule;
    QString text;

    /** Orders by place first. */
    bool operator<(const Finding& other) const;
};

using Findings = QVector<Finding>;

/** The settings of a check. */
struct CheckOptions
{
    PromptContext context = GeneralContext;
    QString brand;
    QStringList soundIds; ///< of the loaded brand sounds
    QString root; ///< the folder that stands for the target's root folder; empty for the real one

    /** Where a file of the target is on this machine. */
    QString onThisMachine(const QString& path) const;

    /** Whether @p path leads to a file. */
    bool isFile(const QString& path) const;
};

// Each checks the content of one file by comparing it with what the library reads from it.
// checkPrompts() uses the loaded brand sounds.
Findings checkPrompts(const QByteArray& content, const CheckOptions& options);
Findings checkSounds(const QByteArray& content, const CheckOptions& options);
Findings checkTable(const QByteArray& content, const CheckOptions& options);
Findings checkStore(const QByteArray& content, const CheckOptions& options);
Findings checkSettings(const QByteArray& content, const CheckOptions& options);
