#pragma once

#include <functional>
#include <string>
#include <vector>

/** The largest accepted ratios of our time to a peer's. */
struct Target {
    double each = 0;   ///< 0 if the peer is only shown
    double median = 0; ///< over all inputs of the operation; 0 for no limit
};

/** One implementation of an operation. Returns the seconds it took if it measures them itself, otherwise 0. */
struct Contender {
    std::string name;
    std::function<double()> run;
    Target target = {};
};

/** An operation of the library and its peers. */
struct Comparison {
    std::string operation;
    std::string input;
    std::function<double()> ours;
    std::vector<Contender> peers; ///< at least one; the growth is compared with the first
    long allocationLimit = -1;    ///< largest number of heap allocations of one call; -1 for no limit
    bool isSelfTimed = false;

    // For an operation with inputs of several sizes:
    std::string series = {};
    double work = 0;    ///< in characters or rows
    long heapLimit = 0; ///< largest heap use in bytes; 0 for no limit
};

/** @return the added comparison, to set further fields; valid until the next call */
Comparison& addComparison(const Comparison& comparison);

/** Makes the function of a contender from one without a result. */
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
