#pragma once

#include <core/speech/language.h>

#include <QString>

/** The least length, in UTF-16 code units, of a text that the processor does not learn to predict. */
constexpr int unlearnable = 32 * 1024;

/**
 * A text of @p length UTF-16 code units. It consists of words from the sample of @p language (of
 * characters if that has no blanks), in an order that depends only on @p seed and does not repeat.
 * Ends of sentences, digits and capitals are as frequent as in the sample. A tagged text has a tag
 * for every second sentence and a reset for every ninth.
 */
QString sampleText(Language language, int length, bool isTagged, quint32 seed);

/** The languages that have a sample. */
QList<Language> sampleLanguages();

/** A path in a folder that is deleted when the program ends. */
QString temporaryPath(const QString& name);

void writeFile(const QString& fileName, const QByteArray& content);
