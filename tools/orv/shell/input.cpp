#include "shell/input.h"

#include "shell/commandline.h"

#include <QTextCodec>

#include <unistd.h>

void openInput(QFile& file, QString& name)
{
    bool isOpen = false;
    if (name.isEmpty()) { // of a variable that is not set, say: to wait for input would puzzle
        throw Failure{QStringLiteral("the name of a file is empty")};
    }
    if (name == QLatin1String("-")) {
        name = QStringLiteral("standard input");
        // By its descriptor: the stream would be read up to the NULs of its lines.
        isOpen = file.open(STDIN_FILENO, QIODevice::ReadOnly);
    } else {
        file.setFileName(name);
        isOpen = file.open(QIODevice::ReadOnly);
    }
    if (!isOpen) {
        throw Failure{QStringLiteral("%1: %2").arg(name, file.errorString())};
    }
}

bool decodeUtf8(const QByteArray& bytes, QString& text)
{
    QTextCodec::ConverterState state;
    text = QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

LineReader::LineReader(const QString& fileName)
    : name(fileName)
{
    openInput(file, name);
}

bool LineReader::readLine(QString& line)
{
    QByteArray bytes = file.readLine();
    if (bytes.isEmpty()) {
        if (file.error() != QFileDevice::NoError) {
            throw Failure{
                QStringLiteral("%1:%2: %3").arg(name, QString::number(number), file.errorString())};
        }
        return false;
    }
    ++number;
    if (bytes.endsWith('\n')) {
        bytes.chop(bytes.endsWith("\r\n") ? 2 : 1);
    }
    if (!decodeUtf8(bytes, line)) {
        throw Failure{QStringLiteral("%1:%2: not valid UTF-8").arg(name, QString::number(number))};
    }
    return true;
}

int LineReader::lineNumber() const
{
    return number;
}
