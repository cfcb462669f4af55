#include "benchmarks/measurement.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>

namespace hopsel::bench {

double Samples::percentile(std::size_t percent) const {
    if (values_.empty()) throw std::logic_error("nothing was measured");
    std::vector<double> sorted = values_;
    std::sort(sorted.begin(), sorted.end());
    const std::size_t rank = (sorted.size() * percent + 99) / 100;
    return sorted[rank - 1];
}

void report(const std::string& name, double value, const std::string& unit, Budget budget) {
    std::printf("RESULT %s|%.3f|%s|", name.c_str(), value, unit.c_str());
    if (budget)
        std::printf("%.3f\n", *budget);
    else
        std::puts("-");
    std::fflush(stdout);
}

void reportRatio(const std::string& name, double value, double other, Budget budget) {
    report(name, value / other, "times", budget);
}

void report(const std::string& name, const Samples& samples, Budget median, Budget p99) {
    report(name + " median", samples.median(), "ms", median);
    report(name + " p99", samples.p99(), "ms", p99);
}

} // namespace hopsel::bench
