#pragma once

#include "comparison.h"

#include "heap.h"

/** A comparison with what was measured of it. */
struct Measurement {
    Comparison comparison;
    double ours;               ///< the median, in nanoseconds
    std::vector<double> peers; ///< in the order of the comparison's
    HeapUse heap;

    double ratio() const { return ours / peers.front(); }
    bool holds() const;
};

/**
 * Prints the tables: a summary by operation, how times grow with the work, and each comparison.
 *
 * @return whether all targets hold
 */
bool printReport(const std::vector<Measurement>& measurements);
