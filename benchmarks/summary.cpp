#include "summary.h"

#include <algorithm>
#include <cstdio>

namespace {

/** The row for which @p isSame is true; adds @p made if there is none. */
template <typename Row, typename Predicate> Row& rowIn(std::vector<Row>& rows, Predicate isSame, const Row& made) {
    const auto found = std::find_if(rows.begin(), rows.end(), isSame);
    return found != rows.end() ? *found : rows.emplace_back(made);
}

std::vector<Ratios> ratiosOf(const std::vector<Measurement>& measurements) {
    std::vector<Ratios> rows;
    for (const Measurement& measurement : measurements) {
        const Comparison& comparison = measurement.comparison;
        for (std::size_t i = 0; i < comparison.peers.size(); ++i) {
            const Contender& peer = comparison.peers[i];
            if (peer.target.each == 0) { continue; }
            const auto isSame = [&](const Ratios& row) {
                return row.operation == comparison.operation && row.peer == peer.name
                       && row.target.each == peer.target.each;
            };
            Ratios& row = rowIn(rows, isSame, {comparison.operation, peer.name, peer.target, {}, {}});
            row.inputs.push_back(comparison.input);
            row.values.push_back(measurement.ratio(i));
            row.eachHolds = row.eachHolds && measurement.holds(i);
        }
    }
    return rows;
}

std::vector<Growth> growthsOf(const std::vector<Measurement>& measurements) {
    std::vector<Growth> growths;
    for (const Measurement& measurement : measurements) {
        const Comparison& comparison = measurement.comparison;
        if (comparison.work == 0) { continue; }
        const auto isSame = [&comparison](const Growth& growth) {
            return growth.operation == comparison.operation && growth.series == comparison.series;
        };
        Growth& growth = rowIn(
            growths, isSame, {comparison.operation, comparison.series, comparison.peers.front().name, {}, {}, {}});
        growth.inputs.push_back(comparison.input);
        growth.ours.push_back(measurement.ours / comparison.work);
        growth.peers.push_back(measurement.peers.front() / comparison.work);
    }
    return growths;
}

} // namespace

bool Measurement::holds(std::size_t peer) const {
    const double limit = comparison.peers[peer].target.each;
    return (limit == 0 || ratio(peer) <= limit)
           && (comparison.allocationLimit < 0 || heap.allocations <= comparison.allocationLimit)
           && (comparison.heapLimit == 0 || heap.peak <= comparison.heapLimit);
}

bool Measurement::holds() const {
    for (std::size_t i = 0; i < peers.size(); ++i) {
        if (!holds(i)) { return false; }
    }
    return true;
}

double Ratios::median() const {
    std::vector<double> sorted = values;
    std::sort(sorted.begin(), sorted.end());
    const std::size_t half = sorted.size() / 2;
    return sorted.size() % 2 != 0 ? sorted[half] : (sorted[half - 1] + sorted[half]) / 2;
}

double Ratios::worst() const { return *std::max_element(values.begin(), values.end()); }

Report::Report(const std::vector<Measurement>& measurements)
    : measurements(measurements)
    , ratios(ratiosOf(measurements))
    , growths(growthsOf(measurements)) {}

bool Report::holds() const {
    const auto holds = [](const auto& row) { return row.holds(); };
    return std::all_of(ratios.begin(), ratios.end(), holds) && std::all_of(growths.begin(), growths.end(), holds);
}

std::string format(const char* pattern, double value) {
    char text[32];
    std::snprintf(text, sizeof text, pattern, value);
    return text;
}

std::string duration(double nanoseconds) {
    const char* const units[] = {"ns", "us", "ms", "s"};
    std::size_t unit = 0;
    while (nanoseconds >= 1000 && unit + 1 < std::size(units)) {
        nanoseconds /= 1000;
        ++unit;
    }
    return format(nanoseconds < 10 ? "%.2f " : nanoseconds < 100 ? "%.1f " : "%.0f ", nanoseconds) + units[unit];
}
