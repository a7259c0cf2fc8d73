#pragma once

/**
 * @file
 * Prompt markup and brand sounds.
 *
 * A prompt is plain text to be spoken, or markup that asks for an audio file, a file of markup,
 * phonetic text, or speech from the off-board service. A brand sound is a short recording with an
 * id; its file depends on the car brand.
 */

#include <core/orvcore_export.h>
#include <core/speech/language.h>

#include <QHash>
#include <QMetaType>
#include <QString>

/** @addtogroup speech
 * @{ */

/** What a prompt asks for. */
enum PromptMode : int
{
    PromptFile = 0,     ///< the text is the path of a file of markup
    PromptAudio = 1,    ///< the text is the path of an audio file to be played
    PromptText = 2,     ///< the text is spoken on board
    PromptOffboard = 3, ///< the text is spoken by the off-board service
};

/** The caller's situation. Values without a name follow the general rules. */
enum PromptContext : int
{
    GeneralContext = 0,
    BrandSoundContext = 10, ///< only brand sounds and text with a language are parsed
    A4AContext = 19,        ///< off-board markup, also in a file, is tried before the general rules
};

/**
 * A parsed prompt: what to speak or play.
 *
 * A value type. The library registers the meta-type "PromptData" at load.
 */
class ORVCORE_EXPORT PromptData
{
public:
    PromptData() = default;
    /** A prompt without a language or genre. */
    PromptData(const QString& text, PromptMode mode);

    /**
     * Parses a prompt string.
     *
     * Markup may stand anywhere in the string, in exact case and spelling; text around it is
     * dropped. The forms are listed in the order in which they are tried. TEXT and GENRE are any
     * text, PATH and ISO contain no blanks, and ID is the id of a brand sound.
     *
     *     in A4AContext first:
     *     <tts lang="ISO"/><offboard>TEXT</offboard>                 off-board text in that language
     *     <tts lang="ISO"/><offboard genre="GENRE">TEXT</offboard>   the same with a genre
     *     <offboard>TEXT</offboard>                                  off-board text
     *     <offboard genre="GENRE">TEXT</offboard>                    the same with a genre
     *     <file path="PATH"/>                                        off-board markup in the file,
     *     <file language="ISO" path="PATH"/>                         or else the file
     *
     *     then, in all contexts but BrandSoundContext:
     *     <audio path="PATH"/>                                       an audio file
     *     <audio language="ISO" path="PATH"/>
     *     <text language="ISO">ID</text>                             a brand sound
     *     ID                                                         the same, if ID contains a "<"
     *     <file path="PATH"/>                                        a file, which is not read
     *     <file language="ISO" path="PATH"/>
     *     <text>TEXT</text>                                          text
     *     <text language="ISO">TEXT</text>
     *     <phonetic>TEXT</phonetic>
     *     <phonetic language="ISO">TEXT</phonetic>
     *
     *     in BrandSoundContext:
     *     ID                                                         a brand sound
     *     <text language="ISO">ID</text>
     *     <text language="ISO">TEXT</text>                           text
     *
     * Any other string is a text prompt of the whole string. If it contains a "<", one warning is
     * logged, except in BrandSoundContext. If a file cannot be opened in A4AContext, one warning is
     * logged, and the prompt is the file. Only a tts tag sets the language (#InvalidLanguage for an
     * unknown ISO code). Brand sounds are known after soundPath() or loadBrandSounds() has run.
     *
     * Thread-safety: reentrant, but no other thread may load brand sounds at the same time.
     */
    static PromptData parse(const QString& input, PromptContext context);

    /** Whether this is an audio prompt whose file exists and has the suffix "mp3" in any case. */
    bool isMp3ToWavConversionNeeded() const;

    QString text;
    PromptMode mode = PromptText;
    Language language = InvalidLanguage; ///< set only by off-board markup
    QString genre;                       ///< set only by off-board markup
    bool flag = false;                   ///< for the application; the library does not use it
};

Q_DECLARE_METATYPE(PromptData)

/**
 * Rebuilds the table of brand sounds from ../share/tts/common.json, relative to the application's
 * folder.
 *
 * The file is a JSON array of objects with the strings "id" and "value". The value is a path; the
 * brand in lower case replaces its lowest-numbered place marker, such as %1. Elements without both
 * members are skipped; later elements replace earlier ones with the same id. Each path is stored
 * under the id and under the id followed by a full stop.
 *
 * If the file cannot be loaded, the table is empty afterwards; JsonFile::loadDocument() logs the
 * reason. Not thread-safe: no other thread may read or load the table at the same time.
 *
 * @return a copy of the new table, from id to path
 */
ORVCORE_EXPORT QHash<QString, QString> loadBrandSounds(const QString& brand);

/** The same from the file that @p fileName names. */
ORVCORE_EXPORT QHash<QString, QString> loadBrandSounds(
    const QString& brand, const QString& fileName);

/**
 * The path of a brand sound; empty if it is unknown.
 *
 * If the table is empty, loads the sounds of the brand "TYX" first. Thread-safety: as for
 * loadBrandSounds().
 */
ORVCORE_EXPORT QString soundPath(const QString& id);

/** @} */
