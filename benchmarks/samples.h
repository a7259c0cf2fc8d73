#pragma once

#include <core/speech/language.h>

#include <QString>

/** A piece of written text, repeated with variation to @p length UTF-16 code units; @p language has a sample. */
QString sampleText(Language language, int length, bool isTagged);

/** The languages that have a sample. */
QList<Language> sampleLanguages();

/** A path below a folder that goes when the program ends. */
QString temporaryPath(const QString& name);

void writeFile(const QString& fileName, const QByteArray& content);
