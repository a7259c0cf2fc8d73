#include <support/logcapture.h>

#include <support/helpers.h>

#include <mutex>

namespace {

std::mutex mutex;
QStringList texts;
QStringList contexts;

void capture(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    static const char* const levels[] = {"debug: ", "warning: ", "critical: ", "fatal: ", "info: "};
    const std::lock_guard<std::mutex> lock(mutex);
    texts += u(levels[type]) + text;
    contexts += u(" (") + QStringList{u(context.file), u(context.function), u(context.category)}.join(u(", ")) + u(")");
}

} // namespace

LogCapture::LogCapture()
    : previous(qInstallMessageHandler(capture))
{
    take(false);
}

LogCapture::~LogCapture() { qInstallMessageHandler(previous); }

QStringList LogCapture::take(bool withContext)
{
    const std::lock_guard<std::mutex> lock(mutex);
    QStringList lines;
    for (int i = 0; i < texts.size(); ++i) { lines += texts[i] + (withContext ? contexts[i] : QString()); }
    texts.clear();
    contexts.clear();
    return lines;
}
