#pragma once

#include "comparison.h"

#include "heap.h"

/** A comparison and its measurements. */
struct Measurement {
    Comparison comparison;
    double ours;               ///< the median, in nanoseconds
    std::vector<double> peers; ///< in the order of the comparison
    HeapUse heap;

    double ratio(std::size_t peer) const { return ours / peers[peer]; }
    bool holds(std::size_t peer) const; ///< including its heap use
    bool holds() const;
};

/** The ratios of our time to a peer's over all inputs of an operation. */
struct Ratios {
    std::string operation;
    std::string peer;
    Target target;
    std::vector<std::string> inputs;
    std::vector<double> values; ///< one for each input
    bool eachHolds = true;

    double median() const;
    double worst() const;
    bool holds() const { return eachHolds && (target.median == 0 || median() <= target.median); }
};

/** The time for each unit of work (a character, a row) at each size, smallest first, in nanoseconds. */
struct Growth {
    std::string operation;
    std::string series;
    std::string peer; ///< the first
    std::vector<std::string> inputs;
    std::vector<double> ours;
    std::vector<double> peers;

    /** Our growth from the smallest to the largest size, divided by the peer's. */
    double ratio() const { return ours.back() / ours.front() / (peers.back() / peers.front()); }
    bool holds() const { return ratio() <= largestRatio; }

    static constexpr double largestRatio = 1.25;
};

/** The results of one run. */
struct Report {
    explicit Report(const std::vector<Measurement>& measurements);

    bool holds() const;

    std::vector<Measurement> measurements;
    std::vector<Ratios> ratios;
    std::vector<Growth> growths;
};

/** A time in a suitable unit. */
std::string duration(double nanoseconds);

std::string format(const char* pattern, double value);

/** Prints the tables: a summary by operation, how times grow with the work, and each comparison. */
void printReport(const Report& report); // in report.cpp

/** Writes the ratios and the growth as an SVG picture. */
void writePicture(const Report& report, const char* fileName); // in picture.cpp
