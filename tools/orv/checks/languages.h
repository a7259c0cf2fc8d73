#pragma once

#include "text.h"

#include <core/speech/language.h>

/** All languages, by value. */
QVector<Language> allLanguages();

/** The ISO code; empty for a value that belongs to no language. */
QString codeOf(const Language& language);

/** The ISO codes of all languages. */
QStringList languageCodes();

/** The message for an unknown code; suggests the code for a similar code or name. */
QString unknownLanguage(const QString& code);
