#include <support/logcapture.h>

#include <support/helpers.h>

#include <mutex>

namespace {

struct Line {
    QString text;
    QString file;
    int number;
    QString function;
    QString category;

    /** The context; its file gets a remark if the source logs nothing on that line. */
    QString context() const {
        const QByteArray source = readFile(u(TEST_SOURCES) + file).split('\n').value(number - 1);
        const QString place = source.contains("ORV_LOG") ? file : file + u(":%1 writes no line").arg(number);
        return u(" (") + QStringList{place, function, category}.join(u(", ")) + u(")");
    }
};

std::mutex mutex;
QVector<Line> lines;

void capture(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    static const char* const levels[] = {"debug: ", "warning: ", "critical: ", "fatal: ", "info: "};
    const std::lock_guard<std::mutex> lock(mutex);
    lines += {u(levels[type]) + text, u(context.file), context.line, u(context.function), u(context.category)};
}

} // namespace

LogCapture::LogCapture()
    : previous(qInstallMessageHandler(capture)) {
    take(false);
}

LogCapture::~LogCapture() { qInstallMessageHandler(previous); }

QStringList LogCapture::take(bool withContext) {
    const std::lock_guard<std::mutex> lock(mutex);
    QStringList texts;
    for (const Line& line : qAsConst(lines)) { texts += line.text + (withContext ? line.context() : QString()); }
    lines.clear();
    return texts;
}
