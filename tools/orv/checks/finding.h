#pragma once

#include "shell/input.h"
#include "text.h"

#include <core/speech/speechcommon.h>

#include <QStringList>
#include <QVector>

/** What may be found, in the order of the table of rules. */
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

/** A rule as users know it. */
struct RuleText
{
    const char* name;     ///< short and stable
    const char* severity; ///< error, warning or note
    const char* text;     ///< one line of at most 54 characters
};

/** By the values of Rule. */
extern const RuleText ruleTexts[int(Rule::RuleCount)];

/** A mistake that the library passes over in silence. */
struct Finding
{
    Place place;
    Rule rule;
    QString text;

    /** In the order of their places. */
    bool operator<(const Finding& other) const;
};

using Findings = QVector<Finding>;

/** What the checks go by, beside the file. */
struct CheckOptions
{
    PromptContext context = GeneralContext;
    QString brand;
    QStringList soundIds; ///< of the brand sounds that are loaded
    QString root; ///< the folder that stands for the target's root folder; empty for this machine's

    /** Where a file of the target is on this machine. */
    QString onThisMachine(const QString& path) const;

    /** Whether @p path leads to a file. */
    bool isFile(const QString& path) const;
};

// Each judges the content of one file by what the library makes of it; prompts with the brand sounds
// that are loaded.
Findings checkPrompts(const QByteArray& content, const CheckOptions& options);
Findings checkSounds(const QByteArray& content, const CheckOptions& options);
Findings checkTable(const QByteArray& content, const CheckOptions& options);
Findings checkStore(const QByteArray& content, const CheckOptions& options);
Findings checkSettings(const QByteArray& content, const CheckOptions& options);
