#pragma once

#include "shell/progress.h"
#include "text.h"

#include <QBuffer>
#include <QFile>
#include <QJsonDocument>
#include <QString>

/**
 * Opens a file, or standard input for "-", which is then called so in @p name. Says so when the
 * program waits for what somebody types.
 *
 * @return its size in bytes; 0 where that is unknown
 * @throw Failure when it cannot be opened
 */
qint64 openInput(QFile& file, QString& name);

/** The whole content; @p name as for openInput(). @throw Failure */
QByteArray readInput(QString& name);

/** The array or object of a JSON file; @p name as for openInput(). @throw Failure */
QJsonDocument readJson(QString& name);

/** @return false when @p bytes are not valid UTF-8. A byte order mark is left out. */
bool decodeUtf8(const QByteArray& bytes, QString& text);

/**
 * The file @p path; for a folder, the files in it and in the folders within it, by name, hidden ones
 * included, without following links to folders. What cannot be used is an error (exit code 2).
 */
QStringList filesAt(const QString& path);

/** Reads lines, and shows how far it is. */
class LineReader
{
public:
    /** As openInput(). */
    explicit LineReader(const QString& fileName);

    explicit LineReader(const QByteArray& content);

    /** The next line as it stands, without its line break. @return false at the end @throw Failure */
    bool readBytes(QByteArray& line);

    /** The same as text. @throw Failure also for a line that is not valid UTF-8 */
    bool readLine(QString& line);

    int lineNumber = 0; ///< of the line last read, from 1

private:
    QString name;
    QFile file;
    QBuffer buffer;
    QIODevice& device;
    Progress progress;
};

/** A place in a text: the line, and the column in UTF-16 code units; both from 1. */
struct Place
{
    int line = 1;
    Size column = 1;
};

/** Tells the places of growing offsets in a UTF-8 text. */
class PlaceFinder
{
public:
    explicit PlaceFinder(const QByteArray& text);

    /** @p offset is not less than the one before. */
    Place at(Size offset);

private:
    const QByteArray& text;
    Size reached;
    Place place;
};
