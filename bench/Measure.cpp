#include "bench/Measure.h"

#include <malloc.h>

#include <stdexcept>

namespace bench {

benchmark::internal::Benchmark* measure(const std::string& name,
                                        const std::function<void(benchmark::State&)>& run) {
    return benchmark::RegisterBenchmark(name.c_str(), run)
        ->Repetitions(9)
        ->ReportAggregatesOnly(true);
}

void require(bool holds, const std::string& what) {
    if (!holds) {
        throw std::runtime_error(what);
    }
}

void tidyHeap() {
    malloc_trim(0);
}

void addSpeed(Table& table, const Medians& medians, const std::string& name,
              const std::string& peer, double goal) {
    const double mine = medians.of(name + ours);
    const double theirs = medians.of(name + peer);
    if (mine > 0 && theirs > 0) {
        table.add(name + " (" + peer.substr(1) + ')', asTime(mine), asTime(theirs), theirs / mine,
                  goal, false);
    }
}

} // namespace bench
