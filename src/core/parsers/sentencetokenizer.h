#pragma once

#include <core/orvcore_export.h>
#include <core/speech/language.h>

#include <QStringList>

/** @addtogroup parsers
 * @{ */

class QString;

/**
 * Splits a text for speech output into sentences that can be synthesised one by one.
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
     * it is dropped. In Arabic, Chinese, Japanese and Korean, every terminator ends a sentence. In
     * all other languages, a terminator ends it only before white space or the end of the text, and
     * not after an ordinal number ("3. Mai") or before a letter that is not upper case ("ca.
     * zehn"). A sentence of fewer than 10 UTF-16 code units is merged with the shorter of its
     * neighbours; in those other languages, so is one with fewer than 5 blanks. A blank joins the
     * two, except in Chinese and Japanese.
     *
     * The text may carry inline tags of the engine, such as `\!\vol=80\` and a blank. Those in
     * force at the end of a sentence are repeated at the start of the next: the last "domain",
     * "toi", "rate", "vol" and "lang", in this order, then the last tag of any other name, until
     * `\!\rst\` and a blank reset them.
     *
     * Time and memory are linear in the text and the repeated tags. Writes one debug line, unless
     * the text is empty.
     *
     * @return no sentence when the text is empty or white space
     */
    static QStringList split(const QString& text, Language language);
};

/** @} */
