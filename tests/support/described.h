#pragma once

#include <support/helpers.h>

#include <core/speech/speechcommon.h>

/** The fields of a prompt in one text: mode, language, genre or "-", and text. */
inline QString described(const PromptData& prompt) {
    return u("%1 %2 %3 ").arg(prompt.mode).arg(prompt.language).arg(prompt.genre.isEmpty() ? u("-") : prompt.genre)
           + prompt.text;
}
