#pragma once

#include <support/helpers.h>

#include <core/speech/speechcommon_p.h>

/**
 * @file
 * Reference implementation of PromptData::parse(), without reading files of off-board markup:
 *
 *  1. The forms of markup are tried in their order by the patterns that define them; the first that matches wins.
 *     Off-board forms apply only in A4AContext. In BrandSoundContext, only brand sounds apply.
 *  2. The id of a brand sound is the text of its form or, if that does not match, the whole input.
 *  3. Any other input is text, and so is input without "<" outside BrandSoundContext.
 */
namespace reference {

inline PromptData prompt(const QString& input, PromptContext context, const QHash<QString, QString>& sounds) {
    const bool isSoundContext = context == BrandSoundContext;
    if (!isSoundContext && !input.contains(QLatin1Char('<'))) { return PromptData(input, PromptText); }
    static QHash<const PromptForm*, QRegExp> patterns;
    for (const PromptForm& form : promptForms) {
        const bool isSound = form.rule == BrandSoundRule;
        if (isSoundContext ? !isSound : context != A4AContext && form.rule < AudioRule) { continue; }
        QRegExp& pattern = patterns[&form];
        if (pattern.isEmpty()) { pattern.setPattern(u(form.pattern.source)); }
        const bool matches = pattern.indexIn(input) >= 0;
        if (isSound) {
            const QString key = matches ? pattern.cap(form.text) : input;
            if (sounds.contains(key)) { return PromptData(sounds[key], PromptAudio); }
            if (isSoundContext) { return PromptData(key, PromptText); }
        } else if (matches) {
            PromptData result(pattern.cap(form.text), form.mode);
            if (form.language != 0) { result.language = convertIsoToLanguageId(pattern.cap(form.language).toUtf8()); }
            if (form.genre != 0) { result.genre = pattern.cap(form.genre); }
            return result;
        }
    }
    return PromptData(input, PromptText);
}

} // namespace reference
