#pragma once

#include <core/speech/speechcommon.h>

/** The prompt context of a name or number. @throw Failure for any other text */
PromptContext contextOf(const QString& text);
