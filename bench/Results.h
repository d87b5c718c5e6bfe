#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace bench {

/// Shows each measurement as it comes and keeps the medians in seconds: of processor time, or of
/// wall-clock time where the measurement asks for that.
class Medians : public benchmark::ConsoleReporter {
public:
    Medians();
    void ReportRuns(const std::vector<Run>& runs) override;

    /// 0 if there is no such measurement: it was filtered out.
    double of(const std::string& name) const;

private:
    std::map<std::string, double> m_seconds;
};

/// The table at the end: one line a goal.
class Table {
public:
    /// `ratio` is to be at least `goal`, or at most where `atMost` is set.
    void add(const std::string& what, const std::string& ours, const std::string& peer,
             double ratio, double goal, bool atMost);

    /// A figure that has no goal.
    void addFact(const std::string& what, const std::string& figure);

    void print(std::ostream& out) const;

private:
    std::vector<std::vector<std::string>> m_rows;
};

/// A time in the unit that suits it, with three digits.
std::string asTime(double seconds);

/// With two digits after the point.
std::string asNumber(double number);

/// The processor, and how many of its cores this process may use.
std::string machine();

} // namespace bench
