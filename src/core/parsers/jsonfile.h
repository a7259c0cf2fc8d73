#pragma once

#include <core/orvcore_export.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

/** @addtogroup parsers
 * @{ */

class QString;

/**
 * Loads JSON files, with every failure in the log.
 *
 * Thread-safety: reentrant; no operation touches shared state.
 */
class ORVCORE_EXPORT JsonFile
{
public:
    JsonFile() = delete; // only a static operation

    /**
     * Reads and parses the whole of a file.
     *
     * The top level may be an object or an array, empty or not: judging it is the caller's
     * business.
     *
     * @return a null document when the file does not exist or cannot be opened (one warning) or is
     *     not valid JSON (one critical line with the reason and the byte offset); a success writes
     *     one debug line
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
    /** Converts, as the other does: callers hand over an object or a document for a path. */
    JsonPath(const QJsonObject& object);

    /** The document's object; an empty one when the document is null or an array. */
    JsonPath(const QJsonDocument& document);

    /** Whether the object has no keys. */
    bool isEmpty() const;

    /**
     * Follows @p path from the root object: keys joined by "/", each compared exactly.
     *
     * Every "/" separates, so "a//b" and "/a" go through the key "", and the empty path is that key
     * alone. Keys that hold a "/" and elements of arrays cannot be reached.
     *
     * @return the value found, a JSON null included; @p defaultValue when a key is missing or
     *     something other than an object stands in the middle of the path
     */
    QJsonValue value(const QString& path, const QJsonValue& defaultValue) const;

private:
    QJsonObject root;
};

/** @} */
