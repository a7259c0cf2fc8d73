#pragma once

#include <core/orvcore_export.h>
#include <core/speech/language.h>

#include <QByteArray>
#include <QHash>
#include <QString>

/** @addtogroup speech
 * @{ */

/**
 * Remembers a checksum of each speech data file, by language and kind, in a JSON file that survives
 * restarts.
 *
 * The file is a JSON array of objects with the members "checksum" (a string), "filePath" (a
 * string), "language" (the value of #Language) and "type" (the value of #ChecksumType). Where it
 * lies is decided anew by each construction, for all instances. Nothing is written but by
 * writePersistentData().
 *
 * The library does not lock: of two processes that load, change and write the file at the same
 * time, the later one writes over the changes of the other. Processes that share a file lock it
 * themselves, as `orv` does.
 *
 * Failures are only logged. Thread-safety: an instance belongs to one thread at a time, and no two
 * are constructed, written or removed at once; generateChecksum() may be called from any thread.
 */
class ORVCORE_EXPORT SpeechChecksumManager
{
public:
    /** Which of the two checksums that a file may have. */
    enum ChecksumType : int
    {
        AlternateChecksum = 0, ///< a second checksum of the same file
        DefaultChecksum = 1,
    };

    /** What a checksum belongs to. */
    struct ORVCORE_EXPORT ChecksumKey
    {
        ChecksumKey() = default;
        /** Checks none of them. */
        ChecksumKey(const QString& filePath, Language language, ChecksumType type);

        /**
         * Reads what toString() wrote; any other number of parts gives the default key, and so does
         * a path that itself holds a ";".
         */
        explicit ChecksumKey(const QString& key);

        /** Path, ISO code and decimal type, with ";" between. */
        QString toString() const;

        QString filePath; ///< as the caller gives it
        Language language = NoLanguage;
        ChecksumType type = DefaultChecksum;
    };

    /**
     * Loads the store from the file that the environment variable ORV_SPEECH_CHECKSUM_FILE names,
     * even when it is empty; without it from /mnt/share/speech/checksum.json.
     *
     * A missing or broken file, of which JsonFile::loadDocument() tells in the log, is an empty
     * store. Elements of the array are not validated: a missing member is an empty text or 0.
     */
    SpeechChecksumManager();

    /** The stored checksum; null when there is none. */
    QByteArray checksum(const QString& filePath, Language language, ChecksumType type) const;

    /** Stores or replaces a checksum; a null one changes nothing, an empty one is stored. */
    void insert(
        const QString& filePath, Language language, const QByteArray& checksum, ChecksumType type);

    /** Stores the checksum that the file has now. */
    void insert(const QString& filePath, Language language, ChecksumType type);

    /** Forgets the checksums of both kinds. */
    void remove(const QString& filePath, Language language);

    /**
     * The MD5 digest of a file's content, as 32 lower-case hexadecimal digits.
     *
     * A file that cannot be opened has that of an empty one, silently; a read error is one warning.
     * The file is read in blocks, so memory does not grow with it.
     */
    static QByteArray generateChecksum(const QString& filePath);

    /** Deletes the file, not the loaded store; one critical line when that fails. */
    void removeFile();

    /**
     * Replaces the file by the store, in one step: after a crash or a power cut it is the old or
     * the new one, whole. (What is then left over may be a file beside it with a random suffix.)
     *
     * The new file has the read, write and execute permissions of the old one, but not its setuid,
     * setgid and sticky bits, nor its extended attributes. A symbolic link is followed; another
     * hard link keeps the old content. Who watches the file must add it to the watcher anew.
     *
     * What cannot be replaced is written in place: a device, a file of another user, a file in a
     * folder without write permission.
     *
     * A failure is one warning. The old file then stays, but what was written in place may be cut
     * off.
     */
    void writePersistentData();

private:
    QHash<QString, QByteArray> checksums; // by ChecksumKey::toString()
};

/** @} */
