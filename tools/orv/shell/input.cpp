#include "shell/input.h"

#include "shell/output.h"
#include "text.h"

#include <QDir>
#include <QFileInfo>
#include <QTextCodec>

#include <algorithm>
#include <memory>

#include <dirent.h>
#include <unistd.h>

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

qint64 openInput(QFile& file, QString& name)
{
    bool isOpen = false;
    if (name.isEmpty()) { // from a variable that is not set: waiting for input would puzzle
        throw Failure{u"the name of a file is empty"_s};
    }
    if (name == u"-"_s) {
        name = u"standard input"_s;
        if (isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1) {
            printError(u"reading what you type; Ctrl-D on an empty line ends it"_s);
        }
        // By its descriptor: reading through the stream would stop lines at a NUL.
        isOpen = file.open(STDIN_FILENO, QIODevice::ReadOnly);
    } else {
        file.setFileName(name);
        isOpen = file.open(QIODevice::ReadOnly);
    }
    if (!isOpen) {
        throw Failure{u"%1: %2"_s.arg(name, file.errorString())};
    }
    return file.size();
}

QByteArray readInput(QString& name)
{
    QFile file;
    openInput(file, name);
    QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        throw Failure{u"%1: %2"_s.arg(name, file.errorString())};
    }
    return content;
}

QJsonDocument readJson(QString& name)
{
    const QByteArray content = readInput(name);
    QJsonParseError error;
    QJsonDocument document = QJsonDocument::fromJson(content, &error);
    if (document.isNull()) {
        const Place place = PlaceFinder(content).at(error.offset);
        throw Failure{u"%1:%2:%3: no valid JSON: %4"_s.arg(
            name, QString::number(place.line), QString::number(place.column), error.errorString())};
    }
    return document;
}

bool decodeUtf8(const QByteArray& bytes, QString& text)
{
    QTextCodec::ConverterState state;
    text = QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

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

LineReader::LineReader(const QString& fileName)
    : name(fileName)
    , device(file)
    , progress(openInput(file, name))
{}

LineReader::LineReader(const QByteArray& content)
    : device(buffer)
    , progress(content.size())
{
    buffer.setData(content);
    buffer.open(QIODevice::ReadOnly);
}

bool LineReader::readBytes(QByteArray& line)
{
    line = device.readLine();
    if (line.isEmpty()) {
        if (file.error() != QFileDevice::NoError) {
            throw Failure{u"%1:%2: %3"_s.arg(name, QString::number(number), file.errorString())};
        }
        return false;
    }
    ++number;
    progress.advance(line.size());
    if (line.endsWith('\n')) {
        line.chop(line.endsWith("\r\n") ? 2 : 1);
    }
    return true;
}

bool LineReader::readLine(QString& line)
{
    QByteArray bytes;
    if (!readBytes(bytes)) {
        return false;
    }
    if (!decodeUtf8(bytes, line)) {
        throw Failure{u"%1:%2: not valid UTF-8"_s.arg(name, QString::number(number))};
    }
    return true;
}

int LineReader::lineNumber() const
{
    return number;
}

PlaceFinder::PlaceFinder(const QByteArray& text)
    : text(text)
    , reached(text.startsWith("\xEF\xBB\xBF") ? 3 : 0) // the byte order mark takes no column
{}

Place PlaceFinder::at(int offset)
{
    for (const int end = std::min(offset, text.size()); reached < end; ++reached) {
        const auto byte = uchar(text[reached]);
        if (byte == '\n') {
            place = {place.line + 1, 1};
        } else if (byte < 0x80 || byte >= 0xC0) { // no further byte of a character
            place.column += byte >= 0xF0 ? 2 : 1;
        }
    }
    return place;
}
