#include "shell/progress.h"

#include <algorithm>
#include <cstdio>

#include <sys/ioctl.h>
#include <unistd.h>

namespace {

constexpr qint64 quietTime = 1000; // milliseconds
constexpr qint64 drawInterval = 100;
constexpr int widestBar = 40;

bool isDrawn = false; // the bar of any object: there is only one terminal

int terminalWidth()
{
    constexpr int usualWidth = 80;
    winsize size = {};
    const bool isKnown = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : usualWidth;
}

} // namespace

Progress::Progress(qint64 totalBytes)
    : total(isatty(STDERR_FILENO) == 1 ? totalBytes : 0)
{
    timer.start();
}

Progress::~Progress()
{
    clear();
}

void Progress::clear()
{
    if (isDrawn) {
        std::fputs("\r\033[K", stderr);
        isDrawn = false;
    }
}

void Progress::advance(qint64 bytes)
{
    done += bytes;
    const qint64 now = total > 0 ? timer.elapsed() : 0;
    if (now < quietTime || now < drawnAt + drawInterval) {
        return;
    }
    drawnAt = now;
    isDrawn = true;
    const double part = std::min(double(done) / double(total), 1.0);
    const double bytesPerSecond = double(done) * 1000.0 / double(now);
    const auto remaining =
        int(done > 0 && done < total ? double(total - done) / bytesPerSecond : 0);
    const QString numbers = u"%1 %  %2 MB/s  %3:%4 left"_s.arg(int(part * 100), 3)
                                .arg(bytesPerSecond / 1e6, 0, 'f', 1)
                                .arg(remaining / 60)
                                .arg(remaining % 60, 2, 10, QLatin1Char('0'));
    // A full line would make the terminal scroll.
    const int room = terminalWidth() - 1;
    const int barWidth = std::min(widestBar, room - int(numbers.size()) - 3);
    const QString bar = QString(int(part * barWidth), u'#').leftJustified(barWidth);
    const QString line = barWidth > 0 ? u"[%1] %2"_s.arg(bar, numbers) : numbers.left(room);
    std::fprintf(stderr, "\r%s\033[K", qUtf8Printable(line));
}
