#pragma once

#include <QJsonValue>
#include <QString>
#include <QStringList>
#include <QVector>

/** A column: a field of JSON objects and a column of an aligned table. */
struct Column
{
    const char* field;
    const char* heading = ""; ///< in a table; a listing without any has no line of headings
    bool isInTable = true;    ///< false for a field of the objects alone
};

/** Rows, printed as JSON objects, one a line, or as an aligned table for people. */
class Listing
{
public:
    Listing(bool isJson, const QVector<Column>& columns);

    /** One cell for each column. In a table, null shows as "-", and lists have commas. */
    void add(const QVector<QJsonValue>& cells);

    /** Prints the table, unless there are no rows. To be called once, after the last row. */
    void finish() const;

private:
    const bool isJson;
    const QVector<Column> columns;
    QStringList headings;
    QVector<QStringList> rows;
};
