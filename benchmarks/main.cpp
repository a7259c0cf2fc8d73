// Runs the library beside its peers, interleaved, and prints one table.
// usage: orvbench [--brief] [FILTER]   --brief runs each once, without a verdict

#include "allocations.h"
#include "comparison.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <map>
#include <regex>

namespace {

std::vector<Comparison> comparisons;

/** Keeps the median of each benchmark, by its name, in nanoseconds. */
class MedianKeeper : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context&) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Aggregate ? run.aggregate_name == "median" : run.repetitions < 2) {
                medians[run.run_name.function_name] = run.GetAdjustedRealTime();
            }
        }
    }

    std::map<std::string, double> medians;
};

std::string keyOf(std::size_t index, const std::string& contender) { return std::to_string(index) + '|' + contender; }

void registerContender(
    std::size_t index, const std::string& name, const std::function<double()>& run, bool isSelfTimed, bool isBrief)
{
    const std::string key = keyOf(index, name);
    auto* const registered = benchmark::RegisterBenchmark(key.c_str(), [run, isSelfTimed](benchmark::State& state) {
        for (auto _ : state) {
            const double seconds = run();
            if (isSelfTimed) { state.SetIterationTime(seconds); }
        }
    });
    registered->Unit(benchmark::kNanosecond)->Repetitions(isBrief ? 1 : 9);
    if (isBrief) {
        registered->Iterations(1);
    } else if (isSelfTimed) {
        registered->Iterations(5);
    } else {
        registered->MinTime(0.03);
    }
    if (isSelfTimed) {
        registered->UseManualTime();
    } else {
        registered->UseRealTime();
    }
}

long allocationsOf(const Comparison& comparison)
{
    comparison.ours(); // what is made once is not counted
    const long before = allocationCount();
    comparison.ours();
    return allocationCount() - before;
}

std::string duration(double nanoseconds)
{
    const char* const units[] = {"ns", "us", "ms", "s"};
    std::size_t unit = 0;
    while (nanoseconds >= 1000 && unit + 1 < std::size(units)) {
        nanoseconds /= 1000;
        ++unit;
    }
    char text[32];
    std::snprintf(text, sizeof text, "%.*f %s",
        nanoseconds < 10    ? 2
        : nanoseconds < 100 ? 1
                            : 0,
        nanoseconds, units[unit]);
    return text;
}

/** @return whether all targets hold */
bool printTable(const std::map<std::string, double>& medians, bool isBrief)
{
    bool allHold = true;
    std::puts("| Operation | Input | Ours | Peer | Ratio | Target | Allocations | Holds | Also shown |\n"
              "|---|---|---|---|---|---|---|---|---|");
    for (std::size_t i = 0; i < comparisons.size(); ++i) {
        const Comparison& comparison = comparisons[i];
        const auto ours = medians.find(keyOf(i, "orv"));
        if (ours == medians.end()) { continue; }
        const Contender& peer = comparison.peers.front();
        const double peerTime = medians.at(keyOf(i, peer.name));
        const double ratio = ours->second / peerTime;
        const long allocations = comparison.isSelfTimed ? -1 : allocationsOf(comparison);
        const bool holds = (comparison.target == 0 || ratio <= comparison.target)
                           && (comparison.allocationLimit < 0 || allocations <= comparison.allocationLimit);
        allHold = allHold && holds;
        std::string others;
        for (std::size_t k = 1; k < comparison.peers.size(); ++k) {
            others += comparison.peers[k].name + ' ' + duration(medians.at(keyOf(i, comparison.peers[k].name))) + ' ';
        }
        char target[16] = "";
        if (comparison.target > 0) { std::snprintf(target, sizeof target, "%.2f", comparison.target); }
        std::printf("| %s | %s | %s | %s: %s | %.2f | %s | %s | %s | %s|\n", comparison.operation.c_str(),
            comparison.input.c_str(), duration(ours->second).c_str(), peer.name.c_str(), duration(peerTime).c_str(),
            ratio, target, allocations < 0 ? "" : std::to_string(allocations).c_str(),
            isBrief ? ""
            : holds ? "yes"
                    : "**no**",
            others.c_str());
    }
    return allHold || isBrief;
}

} // namespace

void addComparison(const Comparison& comparison) { comparisons.push_back(comparison); }

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    bool isBrief = false;
    std::regex filter("");
    for (int i = 1; i < argc; ++i) {
        if (std::string(argv[i]) == "--brief") {
            isBrief = true;
        } else {
            filter = std::regex(argv[i], std::regex::icase);
        }
    }
    for (const auto add : {addSplitting, addPrompts, addInflating, addChecksums, addTables, addJson, addLanguages,
             addStore, addLoading}) {
        add();
    }
    for (std::size_t i = 0; i < comparisons.size(); ++i) {
        const Comparison& comparison = comparisons[i];
        if (std::regex_search(comparison.operation + ' ' + comparison.input, filter)) {
            registerContender(i, "orv", comparison.ours, comparison.isSelfTimed, isBrief);
            for (const Contender& peer : comparison.peers) {
                registerContender(i, peer.name, peer.run, comparison.isSelfTimed, isBrief);
            }
        }
    }
    // Interleaving spreads what else the machine does over all contenders.
    std::string interleave = "--benchmark_enable_random_interleaving=true";
    char* options[] = {argv[0], interleave.data()};
    int optionCount = 2;
    benchmark::Initialize(&optionCount, options);
    MedianKeeper keeper;
    benchmark::RunSpecifiedBenchmarks(&keeper);
    return printTable(keeper.medians, isBrief) ? 0 : 1;
}
