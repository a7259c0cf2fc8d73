#pragma once

#include <QJsonValue>
#include <QStringList>
#include <QVector>

class QJsonObject;

/** One fact, as a member of a JSON object and as people see it. */
struct Field
{
    const char* name; ///< of the member; nullptr for what people alone see
    QJsonValue value;
    QByteArray shown =
        {};        ///< the text around "%1", the value; a column's heading; null: JSON alone
    int width = 0; ///< of the value in characters; negative for one at the left
};

using Record = QVector<Field>;

/** Null for an empty text. */
QJsonValue orNull(const QString& text);

/** Writes one object on a line of its own. @throw Failure as print() */
void printJson(const QJsonObject& object);

/**
 * Writes a JSON object, or the texts of the fields one behind the other: for a list, one for each
 * element; none for a value that is null. @throw Failure
 */
void printRecord(bool isJson, const Record& record);

/** Records as JSON objects, one a line, or as rows of an aligned table for people. */
class Listing
{
public:
    explicit Listing(bool isJson);

    /** All have the same fields. In a table, null shows as "-", and lists have commas. */
    void add(const Record& record);

    /** Prints the table, unless there are no rows. To be called once, after the last row. */
    void finish() const;

private:
    const bool isJson;
    QVector<QStringList> rows;
};
