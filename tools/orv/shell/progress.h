#pragma once

#include "text.h"

#include <QElapsedTimer>

/**
 * A bar on standard error with the rate and the remaining time, for work that takes longer than a
 * second. It appears only on a terminal, and is never wider than that.
 *
 * Output removes the bar first; the next advance() draws it again.
 */
class Progress
{
public:
    explicit Progress(qint64 totalBytes); ///< 0 for no bar
    ~Progress();
    Q_DISABLE_COPY(Progress)

    void advance(qint64 bytes);

    /** Removes the bar from the terminal, if there is one. */
    static void clear();

private:
    const qint64 total; ///< 0 without a bar
    qint64 done = 0;
    qint64 drawnAt = 0;
    QElapsedTimer timer;
};
