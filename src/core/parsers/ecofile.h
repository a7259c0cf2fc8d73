#pragma once

#include <core/orvcore_export.h>

#include <QHash>
#include <QList>
#include <QRegExp>
#include <QSharedDataPointer>
#include <QString>
#include <QStringList>
#include <QVector>

/** @addtogroup parsers
 * @{ */

/**
 * Reads "#ECO" table files: lines that start with "#" declare the separator and the columns, all
 * others hold one row of separated fields, in double quotes where they hold a separator themselves.
 *
 *     #ECO 1.0 UTF-8;
 *     #Separator 3B
 *     #Column id
 *     #Column name
 *     1;"Main; first floor"
 *
 * Reading forgives: what cannot be used is skipped, without a word in the log. A line is judged by
 * the declarations above it; one with more or fewer fields than columns is dropped.
 *
 * A field is taken with the separator in front of it, if there is one. It loses the white space at
 * both ends, then a ";", one blank and a quote in front, and a quote behind. So white space as the
 * separator goes too; any other than ";" stays, and so do a blank and a quote right behind it.
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
        const QString& version() const;     ///< empty until it is declared
        const QString& encoding() const;    ///< as declared; reading does not heed it
        char separator() const;             ///< one Latin-1 character
        const QStringList& columns() const; ///< in the order of the fields, repeated ones too

    private:
        friend class EcoFile;

        QString versionText;
        QString encodingText;
        char separatorCharacter = ';';
        QStringList columnNames;
    };

    /** One line of fields by the names of their columns. Copies share their fields. */
    class ORVCORE_EXPORT Row
    {
    public:
        Row(); ///< has no columns
        Row(const Row& other);
        Row& operator=(const Row& other);
        ~Row();

        /** The number of the row in its file object, from 1, modulo 65536. */
        quint16 entryId() const;

        /** The number of distinct columns. */
        int length() const;

        /** The field of @p column, put in as an empty one where it is missing. */
        QString& operator[](const QString& column);

        /** The field of @p column; empty where it is missing. */
        QString operator[](const QString& column) const;

    private:
        friend class EcoFile;
        struct ORVCORE_NO_EXPORT Data;

        QSharedDataPointer<Data> data;
    };

    /**
     * Reads a file in addition to what is there: rows go on counting, declarations replace or, for
     * columns, add to the earlier ones. The encoding is that of the locale, unless a byte order mark
     * says UTF-8, UTF-16 or UTF-32.
     *
     * @return false when the file cannot be opened
     */
    bool parse(const QString& fileName);

    /**
     * Takes in one declaration:
     * - `#ECO VERSION ENCODING`, a ";" behind the encoding being dropped
     * - `#Separator HEX`, of which the low 8 bits count, as in 3B for ";" and 9 for a tab
     * - `#Column NAME`
     *
     * Single blanks separate the words; with more or fewer words, or any other start, the line
     * means nothing.
     */
    void parseHeaderLine(const QString& line);

    /** Takes in one row. */
    void parseDataLine(const QString& line);

    const Header& header() const;   ///< what is declared so far
    const QList<Row>& rows() const; ///< in the order of the lines

private:
    Header headerData;
    QList<Row> rowList;
    QStringList distinctColumns;      // the columns of the next row
    QHash<QString, int> placesByName; // of the distinct columns
    QVector<int> columnPlaces;        // of each declared column, its place among the distinct ones
    QRegExp fieldPattern;             // empty unless the separator needs a pattern
};

Q_DECLARE_TYPEINFO(EcoFile::Row, Q_MOVABLE_TYPE);

/** @} */
