#pragma once

#include <core/orvcore_export.h>
#include <core/speech/language.h>

#include <QStringList>

/** @addtogroup parsers
 * @{ */

class QString;

/**
 * Cuts a text that is to be spoken into sentences, each of which can be synthesised by itself.
 *
 * Thread-safety: reentrant; no operation touches shared state.
 */
class ORVCORE_EXPORT SentenceTokenizer
{
public:
    SentenceTokenizer() = delete; // only a static operation

    /**
     * The sentences of @p text in order, under the rules of @p language.
     *
     * A sentence ends at one of the language's terminators, which stays with it; white space around
     * it is dropped. Arabic, Chinese, Japanese and Korean end one at every terminator. All other
     * languages need white space or the end of the text behind it, and go on after an ordinal
     * number ("3. Mai") or before any letter but an upper-case one ("ca. zehn"). A sentence of
     * fewer than 10 UTF-16 code units, in those other languages also one of fewer than 5 blanks, is
     * merged with the shorter of its neighbours; a blank joins them, except in Chinese and
     * Japanese.
     *
     * The text may carry inline tags of the engine, such as `\!\vol=80\` and a blank. Those in
     * force at the end of a sentence (the last of each name; "lang", "vol", "rate", "toi", "domain"
     * or any other) are put in front of the next, until a `\!\rst\` and a blank take them back.
     *
     * Time and memory are linear in the text and the tags put in. Writes one debug line, unless the
     * text is empty.
     *
     * @return no sentence when the text is empty or white space
     */
    static QStringList split(const QString& text, Language language);
};

/** @} */
