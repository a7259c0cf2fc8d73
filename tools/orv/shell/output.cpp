#include "shell/output.h"

#include "shell/progress.h"

#include <algorithm>
#include <cstdio>

#include <unistd.h>

namespace {

/** Writes a line to standard error. It keeps its place among output that goes to the same file. */
void writeError(const QString& start, const QString& text)
{
    std::fflush(stdout);
    Progress::clear();
    std::fprintf(stderr, "%s: %s\n", qUtf8Printable(start), qUtf8Printable(text));
}

} // namespace

void failIf(bool isWrong, const QString& reason)
{
    if (isWrong) {
        throw Failure{reason};
    }
}

void print(const QString& text)
{
    Progress::clear();
    const QByteArray bytes = text.toUtf8();
    if (std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout) != size_t(bytes.size())) {
        throw Failure{u"cannot write to standard output"_s};
    }
}

void finishOutput()
{
    // An earlier flush may have failed, which ferror() remembers. Some file systems report a full
    // disk only when a file is closed; closing a copy keeps the stream open.
    const bool isFlushed = std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
    const int copy = dup(STDOUT_FILENO);
    failIf(!isFlushed || (copy >= 0 && close(copy) != 0), u"cannot write to standard output"_s);
}

int raiseExitCode(int least)
{
    static int exitCode = 0;
    return exitCode = std::max(exitCode, least);
}

void printError(const QString& reason, int leastExitCode)
{
    writeError(QCoreApplication::applicationName(), onOneLine(reason));
    raiseExitCode(leastExitCode);
}

QString coloured(const QString& text, int colour)
{
    static const bool isWanted = isatty(STDOUT_FILENO) == 1
                                 && qEnvironmentVariableIsEmpty("NO_COLOR")
                                 && qgetenv("TERM") != "dumb";
    return isWanted ? u"\033[%1m%2\033[0m"_s.arg(colour).arg(text) : text;
}

void showLog(bool isShown)
{
    static const char* const levels[] = {"debug", "warning", "critical", "fatal", "info"};
    const QtMessageHandler drop = [](QtMsgType, const QMessageLogContext&, const QString&) {};
    const QtMessageHandler show = [](QtMsgType type, const QMessageLogContext&,
                                      const QString& text) {
        writeError(QLatin1String(levels[type]), text);
    };
    qInstallMessageHandler(isShown ? show : drop);
}
