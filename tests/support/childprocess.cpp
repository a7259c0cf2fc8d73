#include <support/childprocess.h>

#include <QCoreApplication>
#include <QProcess>

ChildResult runChild(const QStringList& arguments)
{
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), arguments);
    child.waitForFinished();
    return {child.exitStatus() == QProcess::CrashExit, child.exitCode(), child.readAllStandardOutput(),
        child.readAllStandardError()};
}
