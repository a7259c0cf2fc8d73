#include "report.h"

#include <QFile>
#include <QtGlobal>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>

#include <sys/utsname.h>
#include <thread>
#include <unicode/uversion.h>
#include <zlib.h>

namespace {

// Forty times the work may cost fifty times as much, since caches end somewhere; for another factor
// that is this power of it.
const double growthPower = std::log(50) / std::log(40) - 1;

// Half of the languages at least are to be this much faster than the peer.
constexpr char plainSplitting[] = "split plain";
constexpr double plainSplittingMedian = 0.8;

std::string format(const char* pattern, double value)
{
    char text[32];
    std::snprintf(text, sizeof text, pattern, value);
    return text;
}

std::string duration(double nanoseconds)
{
    const char* const units[] = {"ns", "us", "ms", "s"};
    std::size_t unit = 0;
    while (nanoseconds >= 1000 && unit + 1 < std::size(units)) {
        nanoseconds /= 1000;
        ++unit;
    }
    return format(nanoseconds < 10 ? "%.2f " : nanoseconds < 100 ? "%.1f " : "%.0f ", nanoseconds) + units[unit];
}

std::string bytes(long count)
{
    return count < 10'000 ? std::to_string(count) + " B" : std::to_string(count / 1'000) + " kB";
}

const char* verdict(bool holds) { return holds ? "yes" : "**no**"; }

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t half = values.size() / 2;
    return values.size() % 2 != 0 ? values[half] : (values[half - 1] + values[half]) / 2;
}

QByteArray processor()
{
    QFile file(QStringLiteral("/proc/cpuinfo"));
    if (file.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : file.readAll().split('\n')) {
            if (line.startsWith("model name")) { return line.mid(line.indexOf(':') + 2); }
        }
    }
    return "unknown processor";
}

void printMachine()
{
    utsname system;
    uname(&system);
    std::printf("%s, %u cores, %s %s; g++ %s, Qt %s, zlib %s, ICU %s\n", processor().constData(),
        std::thread::hardware_concurrency(), system.sysname, system.machine, __VERSION__, qVersion(), zlibVersion(),
        U_ICU_VERSION);
}

using Group = std::vector<const Measurement*>;

/** The measurements by a text that each gives, in the order of their first. */
template <typename Key> std::vector<Group> grouped(const std::vector<Measurement>& measurements, Key key)
{
    std::vector<Group> groups;
    std::map<std::string, std::size_t> indices;
    for (const Measurement& measurement : measurements) {
        const auto [entry, isNew] = indices.insert({key(measurement.comparison), groups.size()});
        if (isNew) { groups.emplace_back(); }
        groups[entry->second].push_back(&measurement);
    }
    return groups;
}

bool printSummary(const std::vector<Measurement>& measurements)
{
    std::puts("\n| Operation | Compared with | Inputs | Our time / peer's: median | worst | Target | Holds |\n"
              "|---|---|---|---|---|---|---|");
    bool allHold = true;
    const auto key = [](const Comparison& comparison) {
        return comparison.operation + '|' + comparison.peers.front().name + '|' + format("%.2f", comparison.target);
    };
    for (const Group& group : grouped(measurements, key)) {
        const Comparison& first = group.front()->comparison;
        std::vector<double> ratios;
        bool holds = true;
        for (const Measurement* measurement : group) {
            ratios.push_back(measurement->ratio());
            holds = holds && measurement->holds();
        }
        std::string target = format("%.2f", first.target);
        if (first.operation == plainSplitting) {
            holds = holds && median(ratios) <= plainSplittingMedian;
            target += format(", median %.2f", plainSplittingMedian);
        }
        allHold = allHold && holds;
        std::printf("| %s | %s | %s | %.2f | %.2f | %s | %s |\n", first.operation.c_str(),
            first.peers.front().name.c_str(),
            group.size() == 1 ? first.input.c_str() : std::to_string(group.size()).c_str(), median(ratios),
            *std::max_element(ratios.begin(), ratios.end()), target.c_str(), verdict(holds));
    }
    return allHold;
}

bool printGrowth(const std::vector<Measurement>& measurements)
{
    std::string rows;
    bool allHold = true;
    const auto key = [](const Comparison& comparison) { return comparison.operation + '|' + comparison.series; };
    for (const Group& group : grouped(measurements, key)) {
        const auto timeByWork = [](const Measurement& each) { return each.ours / each.comparison.work; };
        const Measurement& smallest = *group.front();
        if (smallest.comparison.work == 0) { continue; }
        std::string times;
        double growth = 1;
        double limit = 1;
        bool holds = true;
        for (const Measurement* each : group) {
            times += (times.empty() ? "" : ", ") + each->comparison.input + ": " + duration(timeByWork(*each));
            growth = timeByWork(*each) / timeByWork(smallest);
            limit = std::pow(each->comparison.work / smallest.comparison.work, growthPower);
            holds = holds && growth <= limit;
        }
        allHold = allHold && holds;
        rows += "| " + smallest.comparison.operation + " | " + smallest.comparison.series + " | " + times + " | "
                + format("%.2f | ", growth) + format("%.2f | ", limit) + verdict(holds) + " |\n";
    }
    if (!rows.empty()) {
        std::printf("\n| Operation | Series | Time for each unit of work | Largest by smallest | Target | Holds |\n"
                    "|---|---|---|---|---|---|\n%s",
            rows.c_str());
    }
    return allHold;
}

void printDetails(const std::vector<Measurement>& measurements)
{
    std::puts(
        "\n| Operation | Input | Ours | Peer | Ratio | Target | Allocations | Heap at most | Holds | Also shown |\n"
        "|---|---|---|---|---|---|---|---|---|---|");
    for (const Measurement& measurement : measurements) {
        const Comparison& comparison = measurement.comparison;
        std::string others;
        for (std::size_t k = 1; k < comparison.peers.size(); ++k) {
            others += comparison.peers[k].name + ": " + duration(measurement.peers[k]) + ' ';
        }
        const std::string input =
            comparison.series.empty() ? comparison.input : comparison.series + ' ' + comparison.input;
        std::printf("| %s | %s | %s | %s: %s | %.2f | %.2f | %s | %s | %s | %s|\n", comparison.operation.c_str(),
            input.c_str(), duration(measurement.ours).c_str(), comparison.peers.front().name.c_str(),
            duration(measurement.peers.front()).c_str(), measurement.ratio(), comparison.target,
            comparison.isSelfTimed ? "" : std::to_string(measurement.heap.allocations).c_str(),
            comparison.isSelfTimed ? "" : bytes(measurement.heap.peak).c_str(), verdict(measurement.holds()),
            others.c_str());
    }
}

} // namespace

bool Measurement::holds() const
{
    return ratio() <= comparison.target
           && (comparison.allocationLimit < 0 || heap.allocations <= comparison.allocationLimit)
           && (comparison.heapLimit == 0 || heap.peak <= comparison.heapLimit);
}

bool printReport(const std::vector<Measurement>& measurements)
{
    printMachine();
    const bool summaryHolds = printSummary(measurements);
    const bool growthHolds = printGrowth(measurements);
    printDetails(measurements);
    return summaryHolds && growthHolds;
}
