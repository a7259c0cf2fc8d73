#include "shell/input.h"

#include "shell/failure.h"
#include "shell/output.h"
#include "text.h"

#include <QTextCodec>

#include <algorithm>

#include <unistd.h>

void openInput(QFile& file, QString& name)
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

LineReader::LineReader(const QString& fileName)
    : name(fileName)
    , device(file)
{
    openInput(file, name);
    if (!file.isSequential()) {
        progress = std::make_unique<Progress>(file.size());
    }
}

LineReader::LineReader(const QByteArray& content)
    : device(buffer)
    , progress(std::make_unique<Progress>(content.size()))
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
    if (progress) {
        progress->advance(line.size());
    }
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
