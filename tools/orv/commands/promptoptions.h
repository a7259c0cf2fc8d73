#pragma once

#include <core/speech/speechcommon.h>

class CommandLine;

/** The prompt context of a name or number. @throw Failure for any other text */
PromptContext contextOf(const QString& text);

/**
 * Loads the sounds of the option "brand"; tells on standard error when there are none.
 *
 * @throw Failure when there are none, although a brand was named
 */
void loadSounds(const CommandLine& commandLine);
