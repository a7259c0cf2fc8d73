// Measures the library and its peers in turn, and prints tables of their times.
// usage: orvbench [--brief] [--picture FILE] [FILTER]   --brief runs each operation once and prints no tables

#include "comparison.h"
#include "heap.h"
#include "summary.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

#include <cstdio>
#include <map>
#include <regex>

#include <malloc.h>

namespace {

std::vector<Comparison> comparisons;

/** Keeps the median of each benchmark by its name, in nanoseconds. */
class MedianKeeper : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Aggregate ? run.aggregate_name == "median" : run.repetitions < 2) {
                medians[run.run_name.function_name] = run.GetAdjustedRealTime();
            }
        }
    }

    std::map<std::string, double> medians;
};

std::string keyOf(std::size_t index, const std::string& contender) { return std::to_string(index) + '|' + contender; }

void registerContender(std::size_t index, const std::string& name, const std::function<double()>& run, bool isBrief) {
    const Comparison& comparison = comparisons[index];
    const bool isSelfTimed = comparison.isSelfTimed;
    const std::string key = keyOf(index, name);
    auto* const registered = benchmark::RegisterBenchmark(key.c_str(), [run, isSelfTimed](benchmark::State& state) {
        for (auto _ : state) {
            const double seconds = run();
            if (isSelfTimed) { state.SetIterationTime(seconds); }
        }
    });
    registered->Unit(benchmark::kNanosecond)->Repetitions(isBrief ? 1 : 45);
    if (isBrief) {
        registered->Iterations(1);
    } else if (isSelfTimed) {
        registered->Iterations(5);
    } else {
        registered->MinTime(0.01);
    }
    if (isSelfTimed) {
        registered->UseManualTime();
    } else {
        registered->UseRealTime();
    }
}

void registerAll(const std::regex& filter, bool isBrief) {
    for (std::size_t i = 0; i < comparisons.size(); ++i) {
        const Comparison& comparison = comparisons[i];
        if (std::regex_search(comparison.operation + ' ' + comparison.series + ' ' + comparison.input, filter)) {
            registerContender(i, "orv", comparison.ours, isBrief);
            for (const Contender& peer : comparison.peers) { registerContender(i, peer.name, peer.run, isBrief); }
        }
    }
}

std::vector<Measurement> measurementsOf(const std::map<std::string, double>& medians) {
    std::vector<Measurement> measurements;
    for (std::size_t i = 0; i < comparisons.size(); ++i) {
        const Comparison& comparison = comparisons[i];
        const auto ours = medians.find(keyOf(i, "orv"));
        if (ours == medians.end()) { continue; }
        Measurement measurement{comparison, ours->second, {}, {}};
        for (const Contender& peer : comparison.peers) { measurement.peers.push_back(medians.at(keyOf(i, peer.name))); }
        if (!comparison.isSelfTimed) { // objects that are made once exist by now
            measurement.heap = heapUseOf([&comparison] { comparison.ours(); });
        }
        measurements.push_back(measurement);
    }
    return measurements;
}

} // namespace

Comparison& addComparison(const Comparison& comparison) { return comparisons.emplace_back(comparison); }

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    // Memory stays with the process: the allocation of pages by the system is not compared.
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    bool isBrief = false;
    const char* picture = nullptr;
    std::regex filter("");
    for (int i = 1; i < argc; ++i) {
        if (std::string(argv[i]) == "--brief") {
            isBrief = true;
        } else if (std::string(argv[i]) == "--picture" && i + 1 < argc) {
            picture = argv[++i];
        } else {
            filter = std::regex(argv[i], std::regex::icase);
        }
    }
    for (const auto add : {addSplitting, addPrompts, addInflating, addChecksums, addTables, addJson, addLanguages,
             addStore, addLoading}) {
        add();
    }
    registerAll(filter, isBrief);
    // Random order spreads disturbances by other processes over all contenders.
    std::string interleave = "--benchmark_enable_random_interleaving=true";
    char* options[] = {argv[0], interleave.data()};
    int optionCount = 2;
    benchmark::Initialize(&optionCount, options);
    MedianKeeper keeper;
    benchmark::RunSpecifiedBenchmarks(&keeper);

    const std::vector<Measurement> measurements = measurementsOf(keeper.medians);
    if (measurements.empty()) {
        std::fputs("orvbench: no benchmark fits the filter\n", stderr);
        return 2;
    }
    if (isBrief) {
        std::printf("%zu comparisons ran once each\n", measurements.size());
        return 0;
    }
    const Report report(measurements);
    printReport(report);
    if (picture != nullptr) { writePicture(report, picture); }
    return report.holds() ? 0 : 1;
}
