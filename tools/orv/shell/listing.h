#pragma once

#include <QStringList>
#include <QVariant>
#include <QVector>

class QJsonObject;

/** One fact, as a member of a JSON object and as people see it. */
struct Field
{
    const char* name;            ///< of the member; nullptr for a field that JSON does not have
    QVariant value;              ///< invalid for null
    const char* shown = nullptr; ///< the text around "%1", the value; or the heading of a column;
                                 ///< nullptr for a field that only JSON has
    int width = 0;               ///< of the value in characters; negative to align it at the left
};

using Record = QVector<Field>;

/** Null for an empty text. */
QVariant orNull(const QString& text);

/** Makes printRecord() and listings write JSON objects, one per line. */
void writeJson(bool isWanted);

/** Writes one object on a line of its own. @throw Failure as print() */
void printJson(const QJsonObject& object);

/**
 * Writes a JSON object, or the texts of the fields one behind the other: for a list, one for each
 * element; none for a value that is null. @throw Failure
 */
void printRecord(const Record& record);

/** Records as JSON objects, or as rows of an aligned table for people. */
class Listing
{
public:
    /** All have the same fields. In a table, null shows as "-", and lists have commas. */
    void add(const Record& record);

    /** Prints the table, unless there are no rows. To be called once, after the last row. */
    void finish() const;

private:
    QVector<QStringList> rows;
};
