// Samples of one quantity, and the lines in which results leave a benchmark program.
//
// The script that runs the benchmarks joins the lines into a table: "RESULT <name>|<value>|<unit>|<budget>",
// where the budget is the largest value that is acceptable, or "-". Of a quantity with many samples the
// median and the 99th percentile are one line each, "<name> median" and "<name> p99".
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace hopsel::bench {

class Samples {
  public:
    void add(double value) { values_.push_back(value); }
    double median() const { return percentile(50); }
    double p99() const { return percentile(99); }

  private:
    /// The smallest sample that so many in a hundred samples do not exceed.
    double percentile(std::size_t percent) const;

    std::vector<double> values_;
};

using Budget = std::optional<double>;

void report(const std::string& name, double value, const std::string& unit, Budget budget = {});
/// How many times the other value it is, which a machine that is slow for both does not change.
void reportRatio(const std::string& name, double value, double other, Budget budget = {});
/// Samples in milliseconds.
void report(const std::string& name, const Samples& samples, Budget median = {}, Budget p99 = {});

} // namespace hopsel::bench
