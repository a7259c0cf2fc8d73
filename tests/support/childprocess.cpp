#include <support/childprocess.h>

void ChildProcess::start(const QString& program, const QStringList& arguments) {
    QStringList words = QString::fromUtf8(TEST_EMULATOR).split(QLatin1Char('|')) << program;
    words.removeAll(QString()); // no emulator
    QProcess::start(words.first(), words.mid(1) + arguments);
}

ChildResult runChild(
    const QStringList& arguments, const QString& program, const QByteArray& input, const QString& folder) {
    ChildProcess child;
    child.setWorkingDirectory(folder);
    child.start(program, arguments);
    child.write(input);
    child.closeWriteChannel();
    if (!child.waitForFinished()) { return {}; }
    QByteArray error = child.readAllStandardError();
    const auto remark = error.indexOf("qemu: uncaught target signal"); // the emulator's own, after a crash
    error.truncate(remark < 0 ? error.size() : remark);
    return {child.exitStatus() == QProcess::CrashExit, child.exitCode(), child.readAllStandardOutput(), error};
}
