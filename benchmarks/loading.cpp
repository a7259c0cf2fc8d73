#include "comparison.h"

#include <cstdio>
#include <cstdlib>

namespace {

/** The CPU time, in seconds, that a new process with Qt Core takes to load a library. */
double load(const std::string& library, const char* process, const char* binding) {
    // Unlike QProcess, popen() does not copy the page table, which is large here.
    FILE* const probe = popen((LOAD_PROBE " '" + library + "' " + process + ' ' + binding).c_str(), "r");
    double seconds = 0;
    if (probe == nullptr || std::fscanf(probe, "%lf", &seconds) != 1 || pclose(probe) != 0) { std::abort(); }
    return seconds;
}

} // namespace

void addLoading() {
    const struct {
        const char *process, *binding;
        double target;
    } rows[] = {{"bare", "lazy", 3.2}, {"bare", "immediate", 4.2}, {"application", "lazy", 1.8},
        {"application", "immediate", 2.5}};
    for (const auto& row : rows) {
        addComparison({std::string("load, ") + row.process, row.binding,
            [row] { return load(ORV_LIBRARY, row.process, row.binding); },
            {{"empty library", [row] { return load(EMPTY_LIBRARY, row.process, row.binding); }, row.target}}});
    }
}
