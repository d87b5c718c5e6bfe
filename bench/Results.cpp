#include "bench/Results.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <iomanip>
#include <sstream>
#include <thread>

namespace bench {

Medians::Medians()
    : ConsoleReporter(isatty(STDOUT_FILENO) == 1 ? OO_ColorTabular : OO_Tabular) {}

void Medians::ReportRuns(const std::vector<Run>& runs) {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
        if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median") {
            const bool wallClock = run.run_name.time_type == "real_time";
            const double time = wallClock ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
            m_seconds[run.run_name.function_name] =
                time / benchmark::GetTimeUnitMultiplier(run.time_unit);
        }
    }
}

double Medians::of(const std::string& name) const {
    const auto found = m_seconds.find(name);
    return found == m_seconds.end() ? 0 : found->second;
}

void Table::add(const std::string& what, const std::string& ours, const std::string& peer,
                double ratio, double goal, bool atMost) {
    const bool reached = atMost ? ratio <= goal : ratio >= goal;
    m_rows.push_back({what, ours, peer, asNumber(ratio),
                      (atMost ? "at most " : "at least ") + asNumber(goal),
                      reached ? "yes" : "NO"});
}

void Table::addFact(const std::string& what, const std::string& figure) {
    m_rows.push_back({what, figure, "-", "-", "-", "-"});
}

void Table::print(std::ostream& out) const {
    std::vector<std::vector<std::string>> rows = m_rows;
    rows.insert(rows.begin(), {"what", "ours", "peer", "ratio", "goal", "reached"});
    std::vector<std::size_t> widths(rows.front().size());
    for (const auto& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], row[i].size());
        }
    }
    for (const auto& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            out << (i == 0 ? std::left : std::right) << std::setw(static_cast<int>(widths[i]))
                << row[i] << (i + 1 < row.size() ? "  " : "\n");
        }
    }
}

std::string asTime(double seconds) {
    struct Unit {
        double seconds;
        const char* name;
    };
    constexpr std::array units{Unit{1, " s"}, Unit{1e-3, " ms"}, Unit{1e-6, " us"},
                               Unit{1e-9, " ns"}};
    const auto* unit = units.begin();
    while (unit + 1 != units.end() && seconds < unit->seconds) {
        ++unit;
    }
    std::ostringstream text;
    text << std::setprecision(3) << seconds / unit->seconds << unit->name;
    return text.str();
}

std::string asNumber(double number) {
    std::ostringstream text;
    text << std::fixed << std::setprecision(2) << number;
    return text.str();
}

std::string machine() {
    std::ifstream info("/proc/cpuinfo");
    std::string model = "unknown processor";
    for (std::string line; std::getline(info, line);) {
        if (line.starts_with("model name")) {
            model = line.substr(line.find(':') + 2);
            break;
        }
    }
    return model + ", " + std::to_string(std::thread::hardware_concurrency()) + " cores";
}

} // namespace bench
