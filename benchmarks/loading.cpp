#include "comparison.h"

#include <QProcess>

namespace {

/** The CPU time of loading a library in a process of its own that has Qt Core already, in seconds. */
double load(const char* library)
{
    QProcess process;
    process.start(QStringLiteral(LOAD_PROBE), {QString::fromUtf8(library)});
    process.waitForFinished();
    return process.readAllStandardOutput().toDouble();
}

} // namespace

void addLoading()
{
    addComparison({"load", "dlopen", 3.2, [] { return load(ORV_LIBRARY); },
        {{"empty library", [] { return load(EMPTY_LIBRARY); }}}, -1, true});
}
