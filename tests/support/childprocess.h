#pragma once

#include <QtCore>

/**
 * A process of a program of this build; uses the emulator of the tests, if they have one.
 *
 * QProcess itself starts processes by a system call that emulators lack; when that fails, it signals all processes
 * of the system. For a derived class it forks instead, so use this class in all tests.
 */
class ChildProcess : public QProcess {
public:
    void start(const QString& program, const QStringList& arguments) {
        QStringList words = QString::fromUtf8(TEST_EMULATOR).split(QLatin1Char('|')) << program;
        words.removeAll(QString()); // empty without an emulator
        QProcess::start(words.first(), words.mid(1) + arguments);
    }
};

/** The result of a child process. */
struct ChildResult {
    bool isCrash = false;
    int exitCode = -1;
    QByteArray output;
    QByteArray error;
};

/** Runs a program; by default this test program, whose main() handles the arguments. */
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
    const auto remark = error.indexOf("qemu: uncaught target signal"); // the emulator adds it after a crash
    error.truncate(remark < 0 ? error.size() : remark);
    return {child.exitStatus() == QProcess::CrashExit, child.exitCode(), child.readAllStandardOutput(), error};
}
