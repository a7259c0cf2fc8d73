#include "shell/files.h"

#include "shell/input.h"
#include "shell/text.h"

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
            escaped += isAscii ? QString(QLatin1Char(*byte)) : u"\\x%1"_s.arg(uchar(*byte), 2, 16);
        }
        files.append(
            {QDir::cleanPath(folder + u'/' + escaped), 0, u"the name is not valid UTF-8"_s});
    }
}

void appendFile(const QString& path, QVector<FoundFile>& files)
{
    const QFileInfo info(path);
    files.append({path, info.size(),
        !info.exists()  ? u"no such file"_s
        : info.isFile() ? QString()
                        : u"no regular file"_s});
}

void appendFolder(const QString& path, QVector<FoundFile>& files)
{
    const QDir folder(path);
    if (!folder.isReadable()) {
        files.append({path, 0, u"the folder cannot be read"_s});
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
