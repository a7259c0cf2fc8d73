#include "summary.h"

#include <QFile>
#include <QtGlobal>

#include <algorithm>
#include <cstdio>
#include <thread>

#include <sys/utsname.h>
#include <unicode/uversion.h>
#include <zlib.h>

namespace {

std::string bytes(long count) {
    return count < 10'000 ? std::to_string(count) + " B" : std::to_string(count / 1'000) + " kB";
}

const char* verdict(bool holds) { return holds ? "yes" : "**no**"; }

QByteArray processor() {
    QFile file(QStringLiteral("/proc/cpuinfo"));
    if (file.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : file.readAll().split('\n')) {
            if (line.startsWith("model name")) { return line.mid(line.indexOf(':') + 2); }
        }
    }
    return "unknown processor";
}

void printMachine() {
    utsname system;
    uname(&system);
    std::printf("%s, %u cores, %s %s; g++ %s, Qt %s, zlib %s, ICU %s\n", processor().constData(),
        std::thread::hardware_concurrency(), system.sysname, system.machine, __VERSION__, qVersion(), zlibVersion(),
        U_ICU_VERSION);
}

void printRatios(const std::vector<Ratios>& rows) {
    std::puts("\n| Operation | Compared with | Inputs | Our time / peer's: median | worst | Target | Holds |\n"
              "|---|---|---|---|---|---|---|");
    for (const Ratios& row : rows) {
        const std::string target = format("%.2f", row.target.each)
                                   + (row.target.median == 0 ? "" : format(", median %.2f", row.target.median));
        std::printf("| %s | %s | %s | %.2f | %.2f | %s | %s |\n", row.operation.c_str(), row.peer.c_str(),
            row.inputs.size() == 1 ? row.inputs.front().c_str() : std::to_string(row.inputs.size()).c_str(),
            row.median(), row.worst(), target.c_str(), verdict(row.holds()));
    }
}

/** The worst growth of each operation. */
void printGrowth(const std::vector<Growth>& growths) {
    if (growths.empty()) { return; }
    std::puts("\n| Operation | Compared with | Worst of | Our growth / peer's | Target | Holds |\n"
              "|---|---|---|---|---|---|");
    for (auto begin = growths.begin(); begin != growths.end();) {
        const auto end = std::find_if(
            begin, growths.end(), [begin](const Growth& growth) { return growth.operation != begin->operation; });
        const Growth& worst = *std::max_element(
            begin, end, [](const Growth& one, const Growth& other) { return one.ratio() < other.ratio(); });
        std::printf("| %s | %s | %s, %s to %s | %.2f | %.2f | %s |\n", worst.operation.c_str(), worst.peer.c_str(),
            worst.series.c_str(), worst.inputs.front().c_str(), worst.inputs.back().c_str(), worst.ratio(),
            Growth::largestRatio, verdict(worst.holds()));
        begin = end;
    }
}

void printDetails(const std::vector<Measurement>& measurements) {
    std::puts(
        "\n| Operation | Input | Ours | Peers, and the ratio where it has a target | Allocations | Heap at most | "
        "Holds |\n|---|---|---|---|---|---|---|");
    for (const Measurement& measurement : measurements) {
        const Comparison& comparison = measurement.comparison;
        std::string peers;
        for (std::size_t i = 0; i < comparison.peers.size(); ++i) {
            const Contender& peer = comparison.peers[i];
            peers += (i == 0 ? "" : "; ") + peer.name + ' ' + duration(measurement.peers[i])
                     + (peer.target.each == 0 ? "" : ": " + format("%.2f", measurement.ratio(i)));
        }
        std::printf("| %s | %s | %s | %s | %s | %s | %s |\n", comparison.operation.c_str(),
            (comparison.series + (comparison.series.empty() ? "" : " ") + comparison.input).c_str(),
            duration(measurement.ours).c_str(), peers.c_str(),
            comparison.isSelfTimed ? "" : std::to_string(measurement.heap.allocations).c_str(),
            comparison.isSelfTimed ? "" : bytes(measurement.heap.peak).c_str(), verdict(measurement.holds()));
    }
}

} // namespace

void printReport(const Report& report) {
    printMachine();
    printRatios(report.ratios);
    printGrowth(report.growths);
    printDetails(report.measurements);
}
