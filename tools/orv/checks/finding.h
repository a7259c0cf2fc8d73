#pragma once

#include "shell/input.h"

#include <core/speech/speechcommon.h>

#include <tuple>

enum class Rule
{
#define ORV_RULE(enumerator, name, severity, text) enumerator,
#include "checks/rules.def"
};

/** How a rule is presented to users. */
struct RuleText
{
    const char* name;
    const char* severity;
    const char* text;
};

/** Indexed by Rule. */
constexpr RuleText ruleTexts[] = {
#define ORV_RULE(enumerator, name, severity, text) {name, severity, text},
#include "checks/rules.def"
};

/** A mistake that the library does not report. */
struct Finding
{
    Place place;
    Rule rule;
    QString text;

    /** Orders by place first. */
    bool operator<(const Finding& other) const
    {
        return std::tie(place.line, place.column, rule, text)
               < std::tie(other.place.line, other.place.column, other.rule, other.text);
    }
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
    QString onThisMachine(const QString& path) const
    {
        return path.startsWith(u'/') ? root + path : path;
    }

    /** Whether @p path leads to a file. */
    bool isFile(const QString& path) const
    {
        return QFileInfo(onThisMachine(path)).isFile();
    }
};

// Each checks the content of one file by comparing it with what the library reads from it.
// checkPrompts() uses the loaded brand sounds.
Findings checkPrompts(const QByteArray& content, const CheckOptions& options);
Findings checkSounds(const QByteArray& content, const CheckOptions& options);
Findings checkTable(const QByteArray& content, const CheckOptions& options);
Findings checkStore(const QByteArray& content, const CheckOptions& options);
Findings checkSettings(const QByteArray& content, const CheckOptions& options);
