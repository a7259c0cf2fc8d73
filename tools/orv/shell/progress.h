#pragma once

#include <QElapsedTimer>

/**
 * A bar on standard error with the rate and the time that remains, for work that takes longer than
 * a second; only on a terminal.
 */
class Progress
{
public:
    explicit Progress(qint64 totalBytes);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void advance(qint64 bytes);

    /** Frees the line for other output. */
    void clear();

private:
    void draw(qint64 milliseconds) const;

    const qint64 total;
    qint64 done = 0;
    const bool isTerminal;
    qint64 drawnAt = 0;
    bool isDrawn = false;
    QElapsedTimer timer;
};
