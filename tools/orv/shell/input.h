#pragma once

#include "shell/progress.h"

#include <QBuffer>

/** A file to be read. */
struct Input : QFile
{
    Input() = default;

    /**
     * Opens the file; "-" is standard input. A message tells users when the program waits for what
     * they type. @throw Failure
     */
    explicit Input(const QString& fileName);

    /** @throw Failure */
    QByteArray readContent();

    /** Reads JSON text. @throw Failure */
    QJsonDocument readJson();

    QString name; ///< for messages
};

/** Decodes @p bytes without a byte order mark. @return false if they are not valid UTF-8 */
bool decodeUtf8(const QByteArray& bytes, QString& text);

/**
 * The file @p path; for a folder, all files in it and in its folders, also hidden ones, sorted by
 * name. Links to folders are not followed. Paths that cannot be used are errors (exit code 2).
 */
QStringList filesAt(const QString& path);

/** Reads lines, and shows the progress. */
class LineReader
{
public:
    /** Opens the file as Input does. @throw Failure */
    explicit LineReader(const QString& fileName);

    explicit LineReader(const QByteArray& content);

    /** Reads the next line, without its line break. @return false at the end @throw Failure */
    bool readBytes(QByteArray& line);

    /** Reads the next line as text. @throw Failure also if the line is not valid UTF-8 */
    bool readLine(QString& line);

    int lineNumber = 0; ///< of the line last read, from 1

private:
    Input file;
    QBuffer buffer;
    QIODevice& device;
    Progress progress;
};

/** A line, and a column in UTF-16 code units; both from 1. */
struct Place
{
    int line = 1;
    Size column = 1;
};

/** Finds the places of growing offsets in a UTF-8 text. */
class PlaceFinder
{
public:
    explicit PlaceFinder(const QByteArray& text);

    /** @p offset must not be less than the one before. */
    Place at(Size offset);

private:
    const QByteArray& text;
    Size reached;
    Place place;
};
