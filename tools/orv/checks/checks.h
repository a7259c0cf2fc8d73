#pragma once

#include <core/speech/speechcommon.h>

#include <QByteArray>
#include <QString>
#include <QVector>

/** What the library would do without a word that an author hardly means. */
struct Finding
{
    int line; ///< from 1
    QString reason;
};

using Findings = QVector<Finding>;

/** What the checks go by beside the file. */
struct CheckOptions
{
    PromptContext context = GeneralContext;
    QString brand;
    QString root; ///< the folder that stands for the target's root folder; empty for this machine's
};

// Each judges the content of one file by what the library itself makes of it; prompts with the brand
// sounds that are loaded.
Findings checkPrompts(const QByteArray& content, const CheckOptions& options);
Findings checkSounds(const QByteArray& content, const CheckOptions& options);
Findings checkTable(const QByteArray& content, const CheckOptions& options);
Findings checkStore(const QByteArray& content, const CheckOptions& options);
Findings checkSettings(const QByteArray& content, const CheckOptions& options);

/** Where a file of the target is on this machine. */
QString onThisMachine(const QString& path, const CheckOptions& options);

/** Adds a finding when the file that a path leads to is missing. */
void checkFile(Findings& findings, int line, const QString& path, const CheckOptions& options);
