#pragma once

#include <QtCore>

/**
 * A process of a program that was built here; under an emulator where the tests are.
 *
 * To be used in place of its base class, which starts a process by a system call that emulators do not know, and
 * after whose failure it signals every process there is. A class of its own makes it fork.
 */
class ChildProcess : public QProcess
{
public:
    void start(const QString& program, const QStringList& arguments);
};

/** What came of a child process. */
struct ChildResult {
    bool isCrash = false;
    int exitCode = -1;
    QByteArray output;
    QByteArray error;
};

/** Runs a program; without one this test program again, whose main function answers the arguments. */
ChildResult runChild(const QStringList& arguments, const QString& program = QCoreApplication::applicationFilePath(),
    const QByteArray& input = QByteArray(), const QString& folder = QString());
