#pragma once

#include <core/orvcore_export.h>
#include <core/speech/language.h>

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>

/** @addtogroup speech
 * @{ */

/**
 * Stores checksums of speech data files, by path, language and type, in a JSON file.
 *
 * The file is a JSON array of objects with the members "checksum" (a string), "filePath" (a
 * string), "language" (the value of #Language) and "type" (the value of #ChecksumType). Each
 * constructor call sets the path of the file for all instances. Only writePersistentData() writes
 * the file.
 *
 * The library does not lock the file. If two processes load, change and write it at the same time,
 * the last to write discards the changes of the other. Processes that share a file must take the
 * lock that docs/formats.md describes, as `orv` does.
 *
 * Failures are only logged. Thread-safety: use an instance from one thread at a time. Calls of the
 * constructor, writePersistentData() and removeFile() must not overlap, even for two instances. Any
 * thread may call generateChecksum() at any time.
 */
class ORVCORE_EXPORT SpeechChecksumManager
{
public:
    /** The two checksums that a file may have. */
    enum ChecksumType : int
    {
        AlternateChecksum = 0, ///< a second checksum of the same file
        DefaultChecksum = 1,
    };

    /** The file, language and type that a checksum belongs to. */
    struct ORVCORE_EXPORT ChecksumKey
    {
        ChecksumKey() = default;
        /** Does not check the values. */
        ChecksumKey(const QString& filePath, Language language, ChecksumType type);

        /**
         * Parses the result of toString(). Gives the default key if @p key does not have three
         * parts, for example because the path contains a ";".
         */
        explicit ChecksumKey(const QString& key);

        /** Path, ISO code and decimal type, separated by ";". */
        QString toString() const;

        bool operator==(const ChecksumKey& other) const;
        bool operator!=(const ChecksumKey& other) const
        {
            return !(*this == other);
        }

        QString filePath; ///< as the caller passed it
        Language language = NoLanguage;
        ChecksumType type = DefaultChecksum;
    };

    /** A stored checksum with what it belongs to. */
    struct Entry
    {
        ChecksumKey key;
        QByteArray checksum;
    };

    /**
     * Loads the store from the path in the environment variable ORV_SPEECH_CHECKSUM_FILE. If it is
     * not set, the path is /mnt/share/speech/checksum.json; if it is set but empty, there is no
     * file.
     *
     * A missing or invalid file gives an empty store; JsonFile::loadDocument() logs the reason.
     * Elements of the array are not validated: a missing member gives an empty text or 0.
     */
    SpeechChecksumManager();

    /** The stored checksum, or null if there is none. */
    QByteArray checksum(const QString& filePath, Language language, ChecksumType type) const;

    /**
     * All entries, sorted by path, language and type. A path with a ";" gives the default key, as
     * after writing and reloading the store.
     */
    QList<Entry> entries() const;

    /** Stores or replaces a checksum; a null one changes nothing, an empty one is stored. */
    void insert(
        const QString& filePath, Language language, const QByteArray& checksum, ChecksumType type);

    /** Stores generateChecksum() of the file. */
    void insert(const QString& filePath, Language language, ChecksumType type);

    /** Removes the checksums of both types. */
    void remove(const QString& filePath, Language language);

    /**
     * The MD5 digest of a file's content, as 32 lower-case hexadecimal digits.
     *
     * A file that cannot be opened gives the digest of an empty file and no log line. A file that
     * cannot be read up to its stated size gives the digest of what was read, and one warning.
     * Memory use does not depend on the size.
     */
    static QByteArray generateChecksum(const QString& filePath);

    /**
     * The same. Sets @p isRead to whether the file could be opened and read to its end. This
     * distinguishes a missing file from an empty one, which has the same digest.
     */
    static QByteArray generateChecksum(const QString& filePath, bool& isRead);

    /** Deletes the file but not the loaded store. Failure logs one critical line. */
    void removeFile();

    /**
     * Writes the store to the file and replaces it atomically: a crash or power cut leaves the
     * whole old file or the whole new one, and perhaps a file with a random suffix beside it.
     *
     * The new file keeps the read, write and execute permissions of the old one, but not its
     * setuid, setgid and sticky bits or its extended attributes. Symbolic links are followed; other
     * hard links keep the old content. A file watcher must add the file again.
     *
     * A file that cannot be replaced is written in place: a device, a file of another user or
     * group, a file in a folder without write permission, or a file whose name is so long that the
     * new file's, which is longer, would exceed the limit of the system.
     *
     * Failure logs one warning and keeps the old file; a file written in place may be truncated.
     */
    void writePersistentData();

    /**
     * Whether the last writePersistentData() of any instance wrote its table to disk; false before
     * the first one.
     */
    static bool isWritten();

private:
    QHash<QString, QByteArray> checksums; // by ChecksumKey::toString()
};

/** @} */
