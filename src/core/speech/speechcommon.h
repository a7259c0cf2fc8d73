#pragma once

/**
 * @file
 * Prompt markup and brand sounds.
 *
 * A prompt is plain text to be spoken, or text in a small markup that asks for an audio file, a
 * file of markup, phonetic text, or speech made off board. A brand sound is a short recording,
 * named by an id, whose file differs by car brand.
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

/** The caller's situation; values without a name follow the general rules too. */
enum PromptContext : int
{
    GeneralContext = 0,
    BrandSoundContext = 10, ///< only brand sounds and text with a language are understood
    A4AContext = 19, ///< off-board markup, also within a file, comes before the general rules
};

/**
 * One prompt, as the output side plays it.
 *
 * A value type; meta-type "PromptData", registered when the library loads.
 */
class ORVCORE_EXPORT PromptData
{
public:
    PromptData() = default;
    /** A prompt without language and genre. */
    PromptData(const QString& text, PromptMode mode);

    /**
     * Understands a prompt string.
     *
     * Markup is searched anywhere in the string, in exact case and spelling, and text around it is
     * dropped. The forms, in the order in which they are tried, where TEXT and GENRE are any text,
     * PATH and ISO are text without blanks, and ID names a brand sound:
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
     *     ID                                                         the same; the ID holds a "<"
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
     * Everything else is a text prompt of the whole string, with one warning when it holds a "<"
     * outside BrandSoundContext. A file that cannot be opened is a warning too, and the prompt is
     * the file. Only a tts tag sets a language (#InvalidLanguage for an unknown ISO code). Brand
     * sounds are known once soundPath() or loadBrandSounds() has run.
     *
     * Thread-safety: reentrant; it reads the table of brand sounds, so no thread may load that
     * meanwhile.
     */
    static PromptData parse(const QString& input, PromptContext context);

    /** Whether this is an audio prompt whose file exists, with the suffix "mp3" in any case. */
    bool isMp3ToWavConversionNeeded() const;

    QString text;
    PromptMode mode = PromptText;
    Language language = InvalidLanguage; ///< set by off-board markup alone
    QString genre;                       ///< set by off-board markup alone
    bool flag = false;                   ///< the application's own
};

Q_DECLARE_METATYPE(PromptData)

/**
 * Rebuilds the table of brand sounds from share/tts/common.json below the parent of the
 * application's folder.
 *
 * The file is a JSON array of objects with the strings "id" and "value"; in the value, a path, the
 * lowest-numbered place marker (such as %1) stands for the brand in lower case. Elements without
 * both are skipped, later ones replace earlier ones. Each path is found by its id and by its id
 * with a full stop.
 *
 * The old table is gone also when the file cannot be loaded, of which JsonFile::loadDocument()
 * tells in the log. Not thread-safe: no other thread may read or load the table meanwhile.
 *
 * @return a copy of the new table, from id to path
 */
ORVCORE_EXPORT QHash<QString, QString> loadBrandSounds(const QString& brand);

/**
 * The path of a brand sound; empty when it is unknown.
 *
 * Loads the sounds of the brand "TYX" first, as long as the table is empty. Thread-safety: as
 * loadBrandSounds().
 */
ORVCORE_EXPORT QString soundPath(const QString& id);

/** @} */
