#include "shell/files.h"

#include "shell/input.h"
#include "text.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <memory>

#include <dirent.h>

namespace {

QString escaped(const char* name)
{
    QString text;
    for (; *name != '\0'; ++name) {
        const bool isAscii = uchar(*name) < 0x80;
        text += isAscii ? QString(QLatin1Char(*name)) : u"\\x%1"_s.arg(uchar(*name), 2, 16);
    }
    return text;
}

/** What lies in a folder, by name. Qt leaves out names that are not valid UTF-8. */
QVector<FoundFile> entriesOf(const QString& folder)
{
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(
        opendir(QFile::encodeName(folder).constData()), closedir);
    QVector<FoundFile> result;
    if (entries == nullptr) {
        result.append({folder, 0, u"the folder cannot be read"_s});
    }
    while (const dirent* entry = entries ? readdir(entries.get()) : nullptr) {
        QString name;
        const bool isText = decodeUtf8(entry->d_name, name);
        if (name != u"."_s && name != u".."_s) {
            const QString path = folder + u'/' + (isText ? name : escaped(entry->d_name));
            result.append({QDir::cleanPath(path), 0, // within "." without "./"
                isText ? QString() : u"the name is not valid UTF-8"_s});
        }
    }
    std::sort(result.begin(), result.end(),
        [](const FoundFile& a, const FoundFile& b) { return a.path < b.path; });
    return result;
}

} // namespace

QVector<FoundFile> filesAt(const QString& path)
{
    const QFileInfo argument(path);
    if (!argument.isDir()) {
        return {{path, argument.size(),
            !argument.exists()  ? u"no such file"_s
            : argument.isFile() ? QString()
                                : u"no regular file"_s}};
    }
    QVector<FoundFile> files;
    const QVector<FoundFile> entries = entriesOf(path);
    for (const FoundFile& entry : entries) {
        const QFileInfo info(entry.path);
        if (!entry.problem.isEmpty()) {
            files += entry;
        } else if (!info.isDir() || !info.isSymLink()) {
            files += filesAt(entry.path);
        }
    }
    return files;
}
