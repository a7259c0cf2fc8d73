#pragma once

#include <QtCore>

/** Captures the log lines of all threads instead of printing them. Only one object may exist at a time. */
class LogCapture {
public:
    LogCapture();
    ~LogCapture();

    /** The lines since the last call, each as "warning: text". */
    QStringList takeTexts() { return take(false); }

    /** The same with the context: "warning: text (file, function, category)". Notes a wrong line number. */
    QStringList takeLines() { return take(true); }

private:
    static QStringList take(bool withContext);

    const QtMessageHandler previous;
};
