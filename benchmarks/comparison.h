#pragma once

#include <functional>
#include <string>
#include <vector>

/** The largest ratios of our time to a peer's that are accepted. */
struct Target {
    double each = 0;   ///< 0 where the peer is only shown
    double median = 0; ///< of all inputs of the operation; 0 where any will do
};

/** One way to do a thing. Returns the seconds it took where it must measure them itself, else 0. */
struct Contender {
    std::string name;
    std::function<double()> run;
    Target target = {};
};

/** A thing that the library does, beside others that do the same. */
struct Comparison {
    std::string operation;
    std::string input;
    std::function<double()> ours;
    std::vector<Contender> peers; ///< the first has a target
    long allocationLimit = -1;    ///< heap allocations of one call at most; -1 where any number will do
    bool isSelfTimed = false;

    // Where the same thing is done with inputs of several sizes:
    std::string series = {};
    double work = 0;    ///< in characters, rows and the like
    long heapLimit = 0; ///< in bytes; 0 where it is only shown
};

/** @return what was added, for what is set afterwards; good until the next is added */
Comparison& addComparison(const Comparison& comparison);

/** Turns a function without a result into what a contender runs. */
template <typename Function> std::function<double()> timed(Function function) {
    return [function]() mutable {
        function();
        return 0.0;
    };
}

// Each in the source file of that name.
void addSplitting();
void addPrompts();
void addInflating();
void addChecksums();
void addTables();
void addJson();
void addLanguages();
void addStore();
void addLoading();
