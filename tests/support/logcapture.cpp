#include <support/logcapture.h>

#include <mutex>

namespace {

std::mutex mutex;
QVector<LogLine> lines;

void capture(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    const std::lock_guard<std::mutex> lock(mutex);
    lines.append({type, text, QString::fromUtf8(context.file), QString::fromUtf8(context.function),
        QString::fromUtf8(context.category)});
}

} // namespace

LogCapture::LogCapture()
    : previous(qInstallMessageHandler(capture))
{
    takeLines();
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(previous);
}

QVector<LogLine> LogCapture::takeLines()
{
    const std::lock_guard<std::mutex> lock(mutex);
    QVector<LogLine> taken;
    taken.swap(lines);
    return taken;
}

QStringList LogCapture::takeTexts()
{
    static const char* const levels[] = {"debug", "warning", "critical", "fatal", "info"};
    QStringList texts;
    for (const LogLine& line : takeLines()) {
        texts.append(QLatin1String(levels[line.type]) + QLatin1String(": ") + line.text);
    }
    return texts;
}
