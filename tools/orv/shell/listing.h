#pragma once

#include "text.h"

/** A value, with its name in JSON and its presentation for people. */
struct Field
{
    const char* name;            ///< in JSON; nullptr if JSON does not have the field
    QVariant value;              ///< an invalid one is null
    const char* shown = nullptr; ///< for printRecord(), a text with "%1" for the value; for a
                                 ///< Listing, the heading; nullptr if only JSON has the field
    int width = 0;               ///< the least width in characters; negative to align left
};

using Record = QVector<Field>;

/** Null for an empty text. */
QVariant orNull(const QString& text);

/** Makes printRecord() and listings write JSON objects, one per line. */
void writeJson(bool isWanted);

/** Writes one object on a line of its own. @throw Failure as print() */
void printJson(const QJsonObject& object);

/**
 * Writes a JSON object, or the texts of the fields one after the other: for a list, one for each
 * element; for null, none. @throw Failure
 */
void printRecord(const Record& record);

/** Records as JSON objects, or as rows of an aligned table for people. */
class Listing
{
public:
    /** All records must have the same fields. A table shows null as "-", and lists with commas. */
    void add(const Record& record);

    /** Prints the table if it has rows. Call it once, after the last row. */
    void finish() const;

private:
    QVector<QStringList> rows;
};
