#pragma once

#include <QtCore>

/**
 * A process of a program that was built here; under an emulator where the tests are.
 *
 * To be used in place of its base class, which starts a process by a system call that emulators do not know, and
 * after whose failure it signals every process there is. A class of its own makes it fork.
 */
class ChildProcess : public QProcess {
public:
    void start(const QString& program, const QStringList& arguments) {
        QStringList words = QString::fromUtf8(TEST_EMULATOR).split(QLatin1Char('|')) << program;
        words.removeAll(QString()); // no emulator
        QProcess::start(words.first(), words.mid(1) + arguments);
    }
};

/** What came of a child process. */
struct ChildResult {
    bool isCrash = false;
    int exitCode = -1;
    QByteArray output;
    QByteArray error;
};

/** Runs a program; without one this test program again, whose main function answers the arguments. */
inline ChildResult runChild(const QStringList& arguments,
    const QString& program = QCoreApplication::applicationFilePath(), const QByteArray& input = QByteArray(),
    const QString& folder = QString()) {
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
