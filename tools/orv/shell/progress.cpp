#include "shell/progress.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include <sys/ioctl.h>
#include <unistd.h>

namespace {

constexpr qint64 quietTime = 1000; // milliseconds
constexpr qint64 drawInterval = 100;
constexpr int widestBar = 40;

bool isDrawn = false; // some bar: there is one terminal

int terminalWidth()
{
    constexpr int usualWidth = 80;
    winsize size = {};
    const bool isKnown = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : usualWidth;
}

} // namespace

Progress::Progress(qint64 totalBytes)
    : total(totalBytes)
    , isTerminal(isatty(STDERR_FILENO) == 1)
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
    if (!isTerminal) {
        return;
    }
    const qint64 now = timer.elapsed();
    if (now >= quietTime && now >= drawnAt + drawInterval) {
        draw(now);
        drawnAt = now;
        isDrawn = true;
    }
}

void Progress::draw(qint64 milliseconds) const
{
    const double part = done < total ? double(done) / double(total) : 1.0;
    const double bytesPerSecond = double(done) * 1000.0 / double(milliseconds);
    const auto remaining =
        int(bytesPerSecond > 0 ? double(std::max<qint64>(total - done, 0)) / bytesPerSecond : 0);
    char numbers[64];
    const int length = std::snprintf(numbers, sizeof numbers, "%3d %%  %.1f MB/s  %d:%02d left",
        int(part * 100), bytesPerSecond / 1e6, remaining / 60, remaining % 60);
    // A full line would make the terminal scroll.
    const int room = terminalWidth() - 1;
    const int barWidth = std::min(widestBar, room - length - 3);
    if (barWidth > 0) {
        const std::string bar(size_t(part * barWidth), '#');
        std::fprintf(stderr, "\r[%-*s] %s\033[K", barWidth, bar.c_str(), numbers);
    } else {
        std::fprintf(stderr, "\r%.*s\033[K", room, numbers);
    }
}
