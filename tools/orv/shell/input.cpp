#include "shell/input.h"

#include "shell/output.h"

#include <algorithm>
#include <cerrno>
#include <memory>

#include <dirent.h>
#include <unistd.h>

namespace {

constexpr int blockSize = 1 << 20;
constexpr char byteOrderMark[] = "\xEF\xBB\xBF"; // takes no column

QString escaped(const char* name)
{
    QString text;
    for (; *name != '\0'; ++name) {
        const auto byte = uchar(*name);
        text += byte < 0x80 ? QString(QLatin1Char(*name)) : u"\\x%1"_s.arg(byte, 2, 16);
    }
    return text;
}

} // namespace

Input::Input(const QString& fileName)
    : QFile(fileName)
    , name(fileName)
{
    // An empty name usually comes from an unset variable; reading standard input would only wait.
    failIf(name.isEmpty(), u"the name of a file is empty"_s);
    const bool isStandardInput = name == u"-"_s;
    if (isStandardInput) {
        name = u"standard input"_s;
        if (isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1) {
            printError(u"reading what you type; Ctrl-D on an empty line ends it"_s);
        }
    }
    // Opened by its descriptor: with the stream, lines would end at a NUL.
    const bool isOpen = isStandardInput ? open(STDIN_FILENO, ReadOnly) : open(ReadOnly);
    failIf(!isOpen, u"%1: %2"_s.arg(name, errorString()));
}

QByteArray Input::readContent()
{
    QByteArray bytes;
    QByteArray block;
    do { // a short block is the last one; readAll() would wait for a second Ctrl-D on a terminal
        block = read(blockSize);
        bytes += block;
    } while (block.size() == blockSize);
    failIf(error() != NoError, u"%1: %2"_s.arg(name, errorString()));
    return bytes;
}

QJsonDocument Input::readJson()
{
    const QByteArray text = readContent();
    QJsonParseError error;
    QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (document.isNull()) {
        const Place place = PlaceFinder(text).at(error.offset);
        throw Failure{u"%1:%2:%3: no valid JSON: %4"_s.arg(
            name, QString::number(place.line), QString::number(place.column), error.errorString())};
    }
    return document;
}

bool decodeUtf8(const QByteArray& bytes, QString& text)
{
    text = QString::fromUtf8(bytes.constData(), bytes.size());
    // Invalid bytes become replacement characters, so encoding the text gives other bytes.
    return !text.contains(QChar(QChar::ReplacementCharacter))
           || text.toUtf8() == bytes.mid(bytes.startsWith(byteOrderMark) ? 3 : 0);
}

QStringList filesAt(const QString& path)
{
    const QFileInfo argument(path);
    if (argument.isFile()) {
        return {path};
    }
    if (!argument.isDir()) {
        printError(path + (argument.exists() ? u": no regular file"_s : u": no such file"_s), 2);
        return {};
    }
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(
        opendir(QFile::encodeName(path).constData()), closedir);
    QStringList paths;
    const dirent* entry = nullptr;
    while (folder != nullptr && (errno = 0, entry = readdir(folder.get())) != nullptr) {
        QString name; // Qt would skip names that are not valid UTF-8
        const bool isText = decodeUtf8(entry->d_name, name);
        const QString entryPath =
            QDir::cleanPath(path + u'/' + (isText ? name : escaped(entry->d_name)));
        if (!isText) {
            printError(entryPath + u": the name is not valid UTF-8"_s, 2);
        } else if (name != u"."_s && name != u".."_s) {
            paths += entryPath; // in ".", without "./"
        }
    }
    if (folder == nullptr || errno != 0) {
        printError(path + u": the folder cannot be read"_s, 2);
    }
    paths.sort();
    QStringList files;
    for (const QString& entryPath : qAsConst(paths)) {
        const QFileInfo entry(entryPath);
        if (!entry.isDir() || !entry.isSymLink()) {
            files += filesAt(entryPath);
        }
    }
    return files;
}

LineReader::LineReader(const QString& fileName)
    : file(fileName)
    , device(file)
    , progress(file.size())
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
        failIf(file.error() != QFileDevice::NoError,
            u"%1:%2: %3"_s.arg(file.name, QString::number(lineNumber + 1), file.errorString()));
        return false;
    }
    ++lineNumber;
    progress.advance(line.size());
    if (line.endsWith('\n')) {
        line.chop(line.endsWith("\r\n") ? 2 : 1);
    }
    return true;
}

bool LineReader::readLine(QString& line)
{
    QByteArray bytes;
    const bool isRead = readBytes(bytes);
    if (isRead && !decodeUtf8(bytes, line)) {
        throw Failure{u"%1:%2: not valid UTF-8"_s.arg(file.name, QString::number(lineNumber))};
    }
    return isRead;
}

PlaceFinder::PlaceFinder(const QByteArray& text)
    : text(text)
    , reached(text.startsWith(byteOrderMark) ? 3 : 0)
{}

Place PlaceFinder::at(Size offset)
{
    for (const Size end = std::min(offset, text.size()); reached < end; ++reached) {
        const auto byte = uchar(text[reached]);
        if (byte == '\n') {
            place = {place.line + 1, 1};
        } else if (byte < 0x80 || byte >= 0xC0) { // not a continuation byte
            place.column += byte >= 0xF0 ? 2 : 1;
        }
    }
    return place;
}
