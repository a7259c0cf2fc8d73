#pragma once

#include <QString>

/** Ends the program with exit code 2 and one line on standard error. */
struct Failure
{
    QString reason;
};
