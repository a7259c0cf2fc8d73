#pragma once

#include <functional>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

constexpr double unlimited = std::numeric_limits<double>::infinity();

/** A function to measure. One that returns double measures itself, and returns its time in seconds. */
struct Run {
    template <typename Function>
    Run(Function measured)
        : isSelfTimed(std::is_same_v<decltype(measured()), double>)
        , function([measured]() mutable {
            if constexpr (std::is_same_v<decltype(measured()), double>) {
                return measured();
            } else {
                measured();
                return 0.0;
            }
        }) {}

    bool isSelfTimed;
    std::function<double()> function;
};

/** Another implementation of an operation, and the largest accepted ratios of our time to its time. */
struct Peer {
    std::string name;
    Run run;
    double target = unlimited;       ///< unlimited if the peer is only shown
    double medianTarget = unlimited; ///< over all inputs of the operation
};

/** An operation of the library and its peers. */
struct Comparison {
    std::string operation;
    std::string input;
    Run ours;
    std::vector<Peer> peers;             ///< at least one; the growth is compared with the first
    double allocationsLimit = unlimited; ///< on the heap, in one call

    // For an operation with inputs of several sizes:
    std::string series = {};
    double work = 0;              ///< in characters or rows
    double heapLimit = unlimited; ///< largest heap use in bytes
};

/** Prepares the measurements of a comparison, unless the filter leaves it out. */
void addComparison(const Comparison& comparison);

// Each is defined in the source file of its name.
void addSplitting();
void addPrompts();
void addInflating();
void addChecksums();
void addTables();
void addJson();
void addLanguages();
void addStore();
void addLoading();
