#pragma once

#include "bench/Results.h"

#include <benchmark/benchmark.h>

#include <functional>
#include <string>

namespace bench {

/// What stands after the name of a measurement to say whose it is.
inline constexpr char ours[] = "|tessaly";
inline constexpr char byLibXml[] = "|libxml2";

/// Registers a measurement that is repeated nine times.
benchmark::internal::Benchmark* measure(const std::string& name,
                                        const std::function<void(benchmark::State&)>& run);

/// Registers one of a call of `work`, which gives what is not to be optimised away.
template <class Work>
benchmark::internal::Benchmark* measureCalls(const std::string& name, const Work& work);

/// Ends the run, with the reason, if `holds` is false.
void require(bool holds, const std::string& what);

/// What one measured before has freed is not to be tidied up in the next one's time.
void tidyHeap();

/// Adds how many times as fast as the peer we are.
void addSpeed(Table& table, const Medians& medians, const std::string& name,
              const std::string& peer, double goal);

template <class Work>
benchmark::internal::Benchmark* measureCalls(const std::string& name, const Work& work) {
    return measure(name, [work](benchmark::State& state) {
        tidyHeap();
        // A long call is repeated once, a short one often: the first, which gets its memory from
        // the system, counts for neither.
        benchmark::DoNotOptimize(work());
        for (auto _ : state) {
            benchmark::DoNotOptimize(work());
        }
    });
}

} // namespace bench
