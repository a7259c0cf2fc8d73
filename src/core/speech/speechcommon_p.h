#pragma once

#include <core/speech/markuppattern_p.h>
#include <core/speech/speechcommon.h>

/** The rules in the order of trying. Each context tries a consecutive range of them. */
enum PromptRule : quint8
{
    OffboardRule,     ///< off-board markup
    OffboardFileRule, ///< a file that may hold off-board markup
    AudioRule,        ///< audio files
    BrandSoundRule,   ///< a brand sound; if the form does not match, its id is the whole input
    MarkupRule,       ///< all other markup
};

/** A form of markup and the numbers of its captures, 0 for none. */
struct PromptForm
{
    PromptRule rule;
    PromptMode mode;
    MarkupPattern pattern;
    int text;
    int language = 0; // only where the prompt keeps it; other languages are ignored
    int genre = 0;

    /** The form with these captures filled in; for tests and benchmarks. */
    QString written(const QString& text, const QString& language, const QString& genre) const
    {
        QString markup = QString::fromUtf16(pattern.source);
        QString::size_type begin = 0;
        for (int i = 1; (begin = markup.indexOf(QLatin1Char('('))) >= 0; ++i) {
            const auto end = markup.indexOf(QLatin1Char(')')) + 1;
            markup.replace(
                begin, end - begin, i == this->text ? text : (i == this->genre ? genre : language));
        }
        return markup;
    }
};

/** All forms in the order in which they are tried; the first one that matches wins. */
inline constexpr PromptForm promptForms[] = {
    {OffboardRule, PromptOffboard, uR"~(<tts lang="(\S+)"/><offboard>(.*)</offboard>)~", 2, 1},
    {OffboardRule, PromptOffboard,
        uR"~(<tts lang="(\S+)"/><offboard genre="(.*)">(.*)</offboard>)~", 3, 1, 2},
    {OffboardRule, PromptOffboard, uR"~(<offboard>(.*)</offboard>)~", 1},
    {OffboardRule, PromptOffboard, uR"~(<offboard genre="(.*)">(.*)</offboard>)~", 2, 0, 1},
    {OffboardFileRule, PromptFile, uR"~(<file path="(\S+)"/>)~", 1},
    {OffboardFileRule, PromptFile, uR"~(<file language="(\S+)" path="(\S+)"/>)~", 2},
    {AudioRule, PromptAudio, uR"~(<audio path="(\S+)"/>)~", 1},
    {AudioRule, PromptAudio, uR"~(<audio language="(\S+)" path="(\S+)"/>)~", 2},
    {BrandSoundRule, PromptAudio, uR"~(<text language="(\S+)">(.*)</text>)~", 2},
    {MarkupRule, PromptFile, uR"~(<file path="(\S+)"/>)~", 1},
    {MarkupRule, PromptFile, uR"~(<file language="(\S+)" path="(\S+)"/>)~", 2},
    {MarkupRule, PromptText, uR"~(<text>(.*)</text>)~", 1},
    {MarkupRule, PromptText, uR"~(<text language="(\S+)">(.*)</text>)~", 2},
    {MarkupRule, PromptText, uR"~(<phonetic>(.*)</phonetic>)~", 1},
    {MarkupRule, PromptText, uR"~(<phonetic language="(\S+)">(.*)</phonetic>)~", 2},
};
