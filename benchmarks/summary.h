#pragma once

#include "comparison.h"

#include "heap.h"

/** A comparison with what was measured of it. */
struct Measurement {
    Comparison comparison;
    double ours;               ///< the median, in nanoseconds
    std::vector<double> peers; ///< in the order of the comparison's
    HeapUse heap;

    double ratio(std::size_t peer) const { return ours / peers[peer]; }
    bool holds(std::size_t peer) const; ///< with the use of the heap
    bool holds() const;
};

/** Our time by a peer's, of all inputs of an operation. */
struct Ratios {
    std::string operation;
    std::string peer;
    std::vector<std::string> inputs;
    Target target;
    double median;
    double worst;
    bool holds;
};

/** The time for each unit of work (a character, a row) at each size, smallest first, in nanoseconds. */
struct Growth {
    std::string operation;
    std::string series;
    std::string peer; ///< the first
    std::vector<std::string> inputs;
    std::vector<double> ours;
    std::vector<double> peers;

    /** How much more ours grows from the smallest to the largest than the peer's. */
    double ratio() const { return ours.back() / ours.front() / (peers.back() / peers.front()); }
    bool holds() const { return ratio() <= largestRatio; }

    static constexpr double largestRatio = 1.25;
};

/** What one run found out. */
struct Report {
    explicit Report(const std::vector<Measurement>& measurements);

    bool holds() const;

    std::vector<Measurement> measurements;
    std::vector<Ratios> ratios;
    std::vector<Growth> growths;
};

/** A time in the unit that suits it. */
std::string duration(double nanoseconds);

std::string format(const char* pattern, double value);
