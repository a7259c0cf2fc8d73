#pragma once

#include "shell/progress.h"

#include <QBuffer>
#include <QFile>
#include <QJsonDocument>
#include <QString>

#include <memory>

/**
 * Opens a file, or standard input for "-", which is then called so in @p name. Says so when the
 * program waits for what somebody types.
 *
 * @throw Failure when it cannot be opened
 */
void openInput(QFile& file, QString& name);

/** The whole content; @p name as for openInput(). @throw Failure */
QByteArray readInput(QString& name);

/** The array or object of a JSON file; @p name as for openInput(). @throw Failure */
QJsonDocument readJson(QString& name);

/** @return false when @p bytes are not valid UTF-8. A byte order mark is left out. */
bool decodeUtf8(const QByteArray& bytes, QString& text);

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

    /** The number of the line last read, from 1. */
    int lineNumber() const;

private:
    QString name;
    QFile file;
    QBuffer buffer;
    QIODevice& device;
    std::unique_ptr<Progress> progress; // without one the size is unknown
    int number = 0;
};

/** A place in a text: the line, and the column in UTF-16 code units; both from 1. */
struct Place
{
    int line = 1;
    int column = 1;
};

/** Tells the places of growing offsets in a UTF-8 text. */
class PlaceFinder
{
public:
    explicit PlaceFinder(const QByteArray& text);

    /** @p offset is not less than the one before. */
    Place at(int offset);

private:
    const QByteArray& text;
    int reached;
    Place place;
};
