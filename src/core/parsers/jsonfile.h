#pragma once

#include <core/orvcore_export.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

/** @addtogroup parsers
 * @{ */

class QString;

/**
 * Loads JSON files and logs every failure.
 *
 * Thread-safety: reentrant; no operation touches shared state.
 */
class ORVCORE_EXPORT JsonFile
{
public:
    JsonFile() = delete; // only a static operation

    /**
     * Reads and parses a file. The top level may be an object or an array, empty or not; the caller
     * must check it. Success logs one debug line.
     *
     * @return a null document if the file does not exist or cannot be opened (one warning) or is
     *     not valid JSON (one critical line with the reason and the byte offset)
     */
    static QJsonDocument loadDocument(const QString& fileName);
};

/**
 * Looks values up in a JSON object by their path.
 *
 * A value type that shares the object it was made from. Thread-safety: reentrant.
 */
class ORVCORE_EXPORT JsonPath
{
public:
    /** Implicit, like the other constructor, so callers can pass an object or a document. */
    JsonPath(const QJsonObject& object);

    /** Takes the document's object; an empty one if the document is null or an array. */
    JsonPath(const QJsonDocument& document);

    /** Whether the object has no keys. */
    bool isEmpty() const;

    /**
     * The value at @p path: the keys from the root object on, joined by "/". Keys compare exactly.
     *
     * Every "/" is a separator, so "a//b" and "/a" contain the empty key, and the empty path is the
     * empty key alone. Keys that contain a "/" and array elements cannot be reached.
     *
     * @return the value found, which may be a JSON null; @p defaultValue if a key is missing or the
     *     value of a key before the last is not an object
     */
    QJsonValue value(const QString& path, const QJsonValue& defaultValue) const;

private:
    QJsonObject root;
};

/** @} */
