#pragma once

#include <QString>
#include <QVector>

/** A file that was found, or why it cannot be used. */
struct FoundFile
{
    QString path;
    qint64 size;
    QString problem; ///< empty for a file that can be used
};

/**
 * The file @p path; for a folder, the files in it and in the folders within it, by name, hidden ones
 * included, without following links to folders. What cannot be used is found with its problem.
 */
QVector<FoundFile> filesAt(const QString& path);
