#pragma once

#include <QFile>
#include <QString>

/**
 * Opens a file, or standard input for "-", which is then called so in @p name.
 *
 * @throw Failure when it cannot be opened
 */
void openInput(QFile& file, QString& name);

/** @return false when @p bytes are not valid UTF-8. A byte order mark is left out. */
bool decodeUtf8(const QByteArray& bytes, QString& text);

/** Reads the lines of a UTF-8 file, or of standard input, one at a time. */
class LineReader
{
public:
    /** As openInput(). */
    explicit LineReader(const QString& fileName);

    /** The next line without its line break. @return false at the end @throw Failure */
    bool readLine(QString& line);

    /** The number of the line last read, from 1. */
    int lineNumber() const;

private:
    QString name;
    QFile file;
    int number = 0;
};
