#include "input.h"

#include "commandline.h"

#include <QTextCodec>

#include <cstdio>

LineReader::LineReader(const QString& fileName)
    : m_name(fileName)
{
    bool isOpen = false;
    if (fileName.isEmpty() || fileName == QLatin1String("-")) {
        m_name = QStringLiteral("standard input");
        isOpen = m_file.open(stdin, QIODevice::ReadOnly);
    } else {
        m_file.setFileName(fileName);
        isOpen = m_file.open(QIODevice::ReadOnly);
    }
    if (!isOpen) {
        throw Failure{QStringLiteral("%1: %2").arg(m_name, m_file.errorString())};
    }
}

bool LineReader::readLine(QString& line)
{
    QByteArray bytes = m_file.readLine();
    if (bytes.isEmpty()) {
        if (m_file.error() != QFileDevice::NoError) {
            throw Failure{QStringLiteral("%1:%2: %3")
                              .arg(m_name)
                              .arg(m_lineNumber)
                              .arg(m_file.errorString())};
        }
        return false;
    }
    ++m_lineNumber;
    if (bytes.endsWith('\n')) {
        bytes.chop(bytes.endsWith("\r\n") ? 2 : 1);
    }
    QTextCodec::ConverterState state;
    line = QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    if (state.invalidChars > 0 || state.remainingChars > 0) {
        throw Failure{QStringLiteral("%1:%2: not valid UTF-8").arg(m_name).arg(m_lineNumber)};
    }
    return true;
}

int LineReader::lineNumber() const
{
    return m_lineNumber;
}
