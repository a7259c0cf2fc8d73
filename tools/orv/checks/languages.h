#pragma once

#include <core/speech/language.h>

#include <QStringList>
#include <QVector>

/** All languages, by value. */
QVector<Language> allLanguages();

/** The ISO code; empty for a value that belongs to no language. */
QString codeOf(const Language& language);

/** The ISO codes of all languages. */
QStringList languageCodes();

/** The message for a code that is unknown; it suggests a code for a near code or name. */
QString unknownLanguage(const QString& code);
