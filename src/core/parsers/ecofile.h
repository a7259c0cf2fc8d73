#pragma once

#include <core/orvcore_export.h>

#include <QHash>
#include <QList>
#include <QSharedDataPointer>
#include <QString>
#include <QStringList>
#include <QVector>

/** @addtogroup parsers
 * @{ */

/**
 * Reads "#ECO" table files. Lines that start with "#" declare the separator and the columns; every
 * other line is one row of separated fields. A quoted field may contain separators.
 *
 *     #ECO 1.0 UTF-8;
 *     #Separator 3B
 *     #Column id
 *     #Column name
 *     1;"Main; first floor"
 *
 * Lines that cannot be used are skipped and not logged. The declarations above a row apply to it; a
 * row with more or fewer fields than columns is dropped.
 *
 * A field includes the separator before it, if there is one. These are removed from it, in this
 * order: white space at both ends, a leading ";", one leading blank, a leading quote, a trailing
 * quote. So a field keeps a separator other than ";" or white space, and a blank or quote after it.
 *
 * A value type. Thread-safety: reentrant.
 */
class ORVCORE_EXPORT EcoFile
{
public:
    /** What the lines that start with "#" declare. */
    class ORVCORE_EXPORT Header
    {
    public:
        const QString& version() const;     ///< empty until declared
        const QString& encoding() const;    ///< as declared; not used for reading
        char separator() const;             ///< one Latin-1 character
        const QStringList& columns() const; ///< in the order of the fields, with repetitions

    private:
        friend class EcoFile;

        QString versionText;
        QString encodingText;
        char separatorCharacter = ';';
        QStringList columnNames;
    };

    /** The fields of one line by column name. Copies share their fields until one changes. */
    class ORVCORE_EXPORT Row
    {
    public:
        Row(); ///< without columns
        Row(const Row& other);
        Row& operator=(const Row& other);
        ~Row();

        /** The number of the row in its EcoFile, counted from 1, modulo 65536. */
        quint16 entryId() const;

        /** The number of distinct columns. */
        int length() const;

        /** The field of @p column; inserts an empty one if it is missing. */
        QString& operator[](const QString& column);

        /** The field of @p column; empty if it is missing. */
        QString operator[](const QString& column) const;

    private:
        friend class EcoFile;
        struct ORVCORE_NO_EXPORT Data;

        QSharedDataPointer<Data> data;
    };

    /**
     * Reads a file and keeps the rows read before: row numbers continue, columns are appended, and
     * other declarations replace earlier ones. The encoding is that of the locale (with Qt 6 always
     * UTF-8), unless a byte order mark indicates UTF-8, UTF-16 or UTF-32.
     *
     * @return false if the file cannot be opened, which is not logged
     */
    bool parse(const QString& fileName);

    /** How many rows the last parse() dropped: those with more or fewer fields than columns. */
    int droppedLineCount() const;

    /**
     * Reads one declaration:
     * - `#ECO VERSION ENCODING`; a ";" after the encoding is dropped
     * - `#Separator HEX`, such as 3B for ";" and 9 for a tab; only the low 8 bits are used; with
     *   "^" or "\", all rows are dropped
     * - `#Column NAME`
     *
     * Single blanks separate the words. A line with more or fewer words, or with any other start,
     * is ignored; a longer first word, such as `#Columns`, counts as the shorter one.
     */
    void parseHeaderLine(const QString& line);

    /** Reads one row. */
    void parseDataLine(const QString& line);

    /** How many fields parseDataLine() finds in @p line with the current separator. */
    int fieldCount(const QString& line) const;

    const Header& header() const;   ///< the declarations so far
    const QList<Row>& rows() const; ///< in the order of the lines

private:
    Header headerData;
    QList<Row> rowList;
    QHash<QString, int> placesByName; // of the distinct columns
    QVector<int> columnPlaces;        // by declared column: its place among the distinct ones
    int droppedLines = 0;             // by the last parse()
};

Q_DECLARE_TYPEINFO(EcoFile::Row, Q_MOVABLE_TYPE);

/** @} */
