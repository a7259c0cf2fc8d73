#include "shell/output.h"

#include "shell/failure.h"
#include "shell/progress.h"
#include "shell/text.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstdio>
#include <cwchar>

#include <unistd.h>

namespace {

bool isLogShown = false;

void handleMessage(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    static const char* const levels[] = {"debug", "warning", "critical", "fatal", "info"};
    if (isLogShown) {
        std::fflush(stdout); // in the order of events, also where both go to one place
        Progress::clear();
        std::fprintf(stderr, "%s: %s\n", levels[type], qUtf8Printable(text));
    }
}

void writeOut(const QByteArray& bytes)
{
    Progress::clear();
    if (std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout) != size_t(bytes.size())) {
        throw Failure{u"cannot write to standard output"_s};
    }
}

/** How many columns of a terminal @p text takes: two for a wide character, none for an accent. */
int displayWidth(const QString& text)
{
    const QVector<uint> characters = text.toUcs4();
    int width = 0;
    for (const uint character : characters) {
        const int columns = wcwidth(wchar_t(character));
        width += columns >= 0 ? columns : 1;
    }
    return width;
}

} // namespace

void print(const QString& text)
{
    writeOut(text.toUtf8());
}

void printJson(const QJsonObject& object)
{
    writeOut(QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n');
}

void printTable(const QVector<QStringList>& rows)
{
    QVector<int> widths;
    for (const QStringList& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (int i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], std::max(displayWidth(row[i]), 1));
        }
    }
    for (const QStringList& row : rows) {
        QString line;
        for (int i = 0; i < row.size(); ++i) {
            const QString cell = row[i].isEmpty() ? u"-"_s : row[i];
            const int gap = i + 1 < row.size() ? widths[i] + 2 - displayWidth(cell) : 0;
            line += cell + QString(gap, u' ');
        }
        print(line + u'\n');
    }
}

void finishOutput()
{
    // A remark may have flushed the output before and failed; the stream remembers that.
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        throw Failure{u"cannot write to standard output"_s};
    }
}

void printError(const QString& reason)
{
    std::fflush(stdout);
    Progress::clear();
    std::fprintf(stderr, "%s: %s\n", qUtf8Printable(QCoreApplication::applicationName()),
        qUtf8Printable(onOneLine(reason)));
}

QString onOneLine(QString text)
{
    constexpr ushort symbols = 0x2400; // U+2400 is the symbol for U+0000, and so on
    for (QChar& character : text) {
        if (character < u' ') {
            character = QChar(symbols + character.unicode());
        }
    }
    return text;
}

QString coloured(const QString& text, Colour colour)
{
    static const bool isWanted = isatty(STDOUT_FILENO) == 1
                                 && qEnvironmentVariableIsEmpty("NO_COLOR")
                                 && qgetenv("TERM") != "dumb";
    return isWanted ? u"\033[%1m%2\033[0m"_s.arg(colour).arg(text) : text;
}

void takeOverLog()
{
    qInstallMessageHandler(handleMessage);
}

void showLog(bool isShown)
{
    isLogShown = isShown;
}
