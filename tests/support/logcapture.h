#pragma once

#include <QString>
#include <QStringList>
#include <QVector>
#include <QtGlobal>

/** One line of the message log. */
struct LogLine
{
    QtMsgType type;
    QString text;
    QString file;
    QString function;
    QString category;
};

/** Keeps the log lines of all threads from the program's own output while it lives; one at a time.
 */
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    /** What was written since the last call. */
    QVector<LogLine> takeLines();

    /** The same, each line as "warning: text", for one comparison. */
    QStringList takeTexts();

private:
    QtMessageHandler previous;
};
