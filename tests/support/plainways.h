#pragma once

#include <core/speech/speechcommon.h>

#include <QHash>
#include <QStringList>

// What the library does fast, done plainly: by the patterns that define it, one rule after the other. Each stands
// beside the call that brings the library's own result into the same shape.

/** What SentenceTokenizer::split() is to give. */
QStringList splitPlainly(const QString& text, Language language);

/** The fields that the pattern of a table's data lines finds. */
QStringList fieldsByPattern(const QString& line, char separator);

/** The fields of a line, for which that many columns are declared; null when the line is dropped. */
QStringList fieldsOf(const QString& line, int separator, int count);

using Sounds = QHash<QString, QString>;

/** What PromptData::parse() is to give, but for files with off-board markup. */
PromptData parsePlainly(const QString& input, PromptContext context, const Sounds& sounds);

QString printed(const PromptData& prompt);

/** What a plain loop around zlib makes of the data; @p result is the last result code. */
QByteArray inflatedPlainly(QByteArray data, int& result);

/** What Inflate makes of the data in pieces. */
QByteArray inflated(const QByteArray& data, int pieceSize);
