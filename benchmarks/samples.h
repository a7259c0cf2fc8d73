#pragma once

#include <core/speech/language.h>

#include <QString>

/** A text that must be looked at anew each time is this long at least, in UTF-16 code units. */
constexpr int unlearnable = 32 * 1024;

/**
 * @p length UTF-16 code units in words of the sample of @p language, single characters where that
 * has no blanks, in an order that depends on @p seed alone. Ends of sentences, digits and capitals
 * are as frequent as in the sample, and where they were, but nothing repeats. A tagged text has a
 * tag for every second sentence and a reset for every ninth.
 */
QString sampleText(Language language, int length, bool isTagged, quint32 seed);

/** The languages that have a sample. */
QList<Language> sampleLanguages();

/** A path below a folder that goes when the program ends. */
QString temporaryPath(const QString& name);

void writeFile(const QString& fileName, const QByteArray& content);
