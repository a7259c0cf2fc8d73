#include "shell/files.h"

#include "shell/input.h"

#include <QDir>
#include <QFileInfo>

#include <memory>

#include <dirent.h>

namespace {

/** Qt leaves out names that are not valid UTF-8: they are found here, with their bytes escaped. */
void appendUnreadableNames(const QString& folder, QVector<FoundFile>& files)
{
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(
        opendir(QFile::encodeName(folder).constData()), closedir);
    while (const dirent* entry = entries ? readdir(entries.get()) : nullptr) {
        QString text;
        if (decodeUtf8(entry->d_name, text)) {
            continue;
        }
        QString escaped;
        for (const char* byte = entry->d_name; *byte != '\0'; ++byte) {
            const bool isAscii = uchar(*byte) < 0x80;
            escaped += isAscii ? QString(QLatin1Char(*byte))
                               : QStringLiteral("\\x%1").arg(uchar(*byte), 2, 16);
        }
        files.append({QDir::cleanPath(folder + QLatin1Char('/') + escaped), 0,
            QStringLiteral("the name is not valid UTF-8")});
    }
}

void appendFile(const QString& path, QVector<FoundFile>& files)
{
    const QFileInfo info(path);
    files.append({path, info.size(),
        !info.exists()  ? QStringLiteral("no such file")
        : info.isFile() ? QString()
                        : QStringLiteral("no regular file")});
}

void appendFolder(const QString& path, QVector<FoundFile>& files)
{
    const QDir folder(path);
    if (!folder.isReadable()) {
        files.append({path, 0, QStringLiteral("the folder cannot be read")});
    }
    appendUnreadableNames(path, files);
    const QFileInfoList entries = folder.entryInfoList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo& entry : entries) {
        const QString entryPath = QDir::cleanPath(entry.filePath()); // within "." without "./"
        if (!entry.isDir()) {
            appendFile(entryPath, files);
        } else if (!entry.isSymLink()) {
            appendFolder(entryPath, files);
        }
    }
}

} // namespace

QVector<FoundFile> filesAt(const QString& path)
{
    QVector<FoundFile> files;
    if (QFileInfo(path).isDir()) {
        appendFolder(path, files);
    } else {
        appendFile(path, files);
    }
    return files;
}
