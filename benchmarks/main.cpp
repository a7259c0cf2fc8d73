// Measures the library and its peers in turn, and writes their times and targets as JSON, for report.py.
// usage: orvbench [--brief] [FILTER]   --brief runs each operation once

#include "comparison.h"
#include "heap.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

#include <cstdio>
#include <regex>

#include <malloc.h>
#include <unicode/uversion.h>
#include <zlib.h>

namespace {

bool isBrief = false;
std::regex filter("");
bool isEmpty = true;

void add(const std::string& name, const Run& run, const benchmark::UserCounters& numbers) {
    auto* const registered = benchmark::RegisterBenchmark(name.c_str(), [run, numbers](benchmark::State& state) {
        for (auto _ : state) {
            const double seconds = run.function();
            if (run.isSelfTimed) { state.SetIterationTime(seconds); }
        }
        state.counters = numbers;
    });
    registered->Repetitions(isBrief ? 1 : 45);
    if (isBrief) {
        registered->Iterations(1);
    } else if (run.isSelfTimed) {
        registered->Iterations(5);
    } else {
        registered->MinTime(0.01);
    }
    if (run.isSelfTimed) {
        registered->UseManualTime();
    } else {
        registered->UseRealTime();
    }
}

} // namespace

void addComparison(const Comparison& comparison) {
    if (!std::regex_search(comparison.operation + ' ' + comparison.series + ' ' + comparison.input, filter)) { return; }
    isEmpty = false;
    const std::string name = comparison.operation + '|' + comparison.series + '|' + comparison.input + '|';
    benchmark::UserCounters numbers{{"work", comparison.work}, {"allocationsLimit", comparison.allocationsLimit},
        {"heapLimit", comparison.heapLimit}};
    if (!comparison.ours.isSelfTimed) {
        comparison.ours.function(); // makes the objects that are made once
        const HeapUse use = heapUseOf(comparison.ours.function);
        numbers.insert({{"allocations", use.allocations}, {"heap", use.peak}});
    }
    add(name + "orv|", comparison.ours, numbers);
    for (const Peer& peer : comparison.peers) {
        add(name + peer.name + '|', peer.run, {{"target", peer.target}, {"medianTarget", peer.medianTarget}});
    }
}

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    // Memory stays with the process: the allocation of pages by the system is not compared.
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    for (const std::string argument : QVector<const char*>(argv + 1, argv + argc)) {
        if (argument == "--brief") {
            isBrief = true;
        } else {
            filter = std::regex(argument, std::regex::icase);
        }
    }
    for (const auto add : {addSplitting, addPrompts, addInflating, addChecksums, addTables, addJson, addLanguages,
             addStore, addLoading}) {
        add();
    }
    if (isEmpty) {
        std::fputs("orvbench: no benchmark fits the filter\n", stderr);
        return 2;
    }
    benchmark::AddCustomContext("versions", std::string("g++ ") + __VERSION__ + ", Qt " + qVersion() + ", zlib "
                                                + zlibVersion() + ", ICU " + U_ICU_VERSION);
    // Random order spreads disturbances by other processes over all contenders.
    const char* options[] = {argv[0], "--benchmark_enable_random_interleaving=true",
        "--benchmark_report_aggregates_only=true", "--benchmark_format=json"};
    int optionCount = 4;
    benchmark::Initialize(&optionCount, const_cast<char**>(options));
    benchmark::RunSpecifiedBenchmarks();
}
