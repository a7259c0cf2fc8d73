#pragma once

#include <QtCore>

/** Keeps the log lines of all threads from the program's own output while it lives; one at a time. */
class LogCapture {
public:
    LogCapture();
    ~LogCapture();

    /** What was written since the last call, each line as "warning: text". */
    QStringList takeTexts() { return take(false); }

    /** The same with the context behind: "warning: text (file, function, category)"; checks the line in the file. */
    QStringList takeLines() { return take(true); }

private:
    static QStringList take(bool withContext);

    const QtMessageHandler previous;
};
