#include "shell/output.h"

#include "shell/commandline.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstdio>

namespace {

bool isLogShown = false;
QString loggedFailure;

void handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    static const char* const levels[] = {"debug", "warning", "critical", "fatal", "info"};
    if (isLogShown) {
        std::fflush(stdout); // in the order of events, also where both go the same way
        std::fprintf(stderr, "%s: %s\n", levels[type], qUtf8Printable(text));
    }
    if (type == QtWarningMsg || type == QtCriticalMsg) {
        const QString function = QString::fromUtf8(context.function);
        loggedFailure = (text.startsWith(function) ? text.mid(function.size()) : text).trimmed();
    }
}

void writeOut(const QByteArray& bytes)
{
    if (std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout) != size_t(bytes.size())) {
        throw Failure{QStringLiteral("cannot write to standard output")};
    }
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
            widths[i] = std::max(widths[i], std::max(row[i].size(), 1));
        }
    }
    for (const QStringList& row : rows) {
        QString line;
        for (int i = 0; i < row.size(); ++i) {
            const QString cell = row[i].isEmpty() ? QStringLiteral("-") : row[i];
            line += i + 1 < row.size() ? cell.leftJustified(widths[i] + 2) : cell;
        }
        print(line + QLatin1Char('\n'));
    }
}

void finishOutput()
{
    // What a remark on standard error had flushed in vain before is gone, but noted.
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        throw Failure{QStringLiteral("cannot write to standard output")};
    }
}

void printError(const QString& reason)
{
    std::fflush(stdout);
    std::fprintf(stderr, "%s: %s\n", qUtf8Printable(QCoreApplication::applicationName()),
        qUtf8Printable(onOneLine(reason)));
}

QString onOneLine(QString text)
{
    constexpr ushort symbols = 0x2400; // U+2400 is the symbol for U+0000, and so on
    for (QChar& character : text) {
        if (character < QLatin1Char(' ')) {
            character = QChar(symbols + character.unicode());
        }
    }
    return text;
}

void takeOverLog()
{
    qInstallMessageHandler(handleMessage);
}

void showLog(bool isShown)
{
    isLogShown = isShown;
}

QString takeLoggedFailure()
{
    QString failure;
    failure.swap(loggedFailure);
    return failure;
}
