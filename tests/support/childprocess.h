#pragma once

#include <QByteArray>
#include <QString>

/** What came of a child process. */
struct ChildResult {
    bool isCrash = false;
    int exitCode = -1;
    QByteArray output;
    QByteArray error;
};

/** Runs this test program again with @p arguments, which its main function answers. */
ChildResult runChild(const QStringList& arguments);
