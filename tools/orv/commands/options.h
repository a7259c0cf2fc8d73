#pragma once

#include "shell/commandline.h"

#include <core/speech/speechcommon.h>

// Options that several commands have.
extern const Option brandOption;
extern const Option contextOption;
extern const Option soundsOption;

/** The name that the option "context" has for a value. */
QString nameOf(PromptContext context);

/** The contexts of the option "context", each once. @throw Failure for an unknown name */
QVector<PromptContext> contextsOf(const CommandLine& commandLine);

/**
 * Loads the brand sounds that the options name. A missing table is a remark on standard error, or a
 * failure where the command cannot do without it or an option asked for it.
 *
 * @throw Failure
 */
QHash<QString, QString> loadSounds(const CommandLine& commandLine, bool isNeeded);
