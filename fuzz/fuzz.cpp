#include "fuzz.h"

#include <cstdio>
#include <cstdlib>

// Log lines are not findings, and printing them would slow the search.
extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    return 0;
}

void require(bool holds, const char* rule)
{
    if (!holds) {
        std::fprintf(stderr, "broken rule: %s\n", rule);
        std::abort();
    }
}
