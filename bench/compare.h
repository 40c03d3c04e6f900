// Times work of the library and the same work done by hand, in turn, so that both meet the same
// machine: what else runs there disturbs the times, hardly their ratio.
#ifndef MLDS_BENCH_COMPARE_H
#define MLDS_BENCH_COMPARE_H

#include <benchmark/benchmark.h>
#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <type_traits>
#include <vector>

#include "heap.h"

namespace bench {

inline double ThreadTime() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

/// The time that the work took, without what other programs took in between. The clock of the
/// thread knows that, but looking at it takes long, so short work has the other clock.
template <typename Work>
double Nanoseconds(Work&& work) {
    const double threadStart = ThreadTime();
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double, std::nano> time = std::chrono::steady_clock::now() - start;
    return std::min(time.count(), ThreadTime() - threadStart);
}

/// The time of `repeats` runs on warm caches. Work that needs preparation returns the nanoseconds
/// that count.
template <typename Work>
double TimeOf(Work&& work, int repeats) {
    double sum = 0;
    if constexpr (std::is_void_v<decltype(work())>) {
        work();  // what the other work drove out of the caches comes back
        sum = Nanoseconds([&] {
            for (int i = 0; i < repeats; ++i) work();
        });
    } else {
        for (int i = 0; i < repeats; ++i) sum += work();
    }
    return sum;
}

inline double Median(std::vector<double>& values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// The time that Google Benchmark shows is that of everything; what counts is reported beside it:
/// medians per element: "ns" of the library, "hand" of the work by hand, their "ratio", and
/// "allocs", the blocks that the library's work takes from the heap.
template <typename Library, typename Hand>
void Compare(benchmark::State& state, std::int64_t elements, Library&& library, Hand&& hand) {
    const int repeats = static_cast<int>(std::max<std::int64_t>(1, 2000 / elements));
    std::vector<double> libraryTimes, handTimes;
    std::uint64_t blocks = 0;
    TimeOf(library, 2);  // warms heap and caches
    TimeOf(hand, 2);
    for (auto _ : state) {
        const std::uint64_t before = BlocksTaken();
        const double libraryTime = TimeOf(library, repeats);
        blocks += BlocksTaken() - before;
        libraryTimes.push_back(libraryTime);
        handTimes.push_back(TimeOf(hand, repeats));
    }
    if (libraryTimes.empty()) return;
    const double each = static_cast<double>(elements) * repeats;
    state.counters["ns"] = Median(libraryTimes) / each;
    state.counters["hand"] = Median(handTimes) / each;
    state.counters["ratio"] = Median(libraryTimes) / Median(handTimes);
    state.counters["allocs"] =
        static_cast<double>(blocks) / (each * static_cast<double>(state.iterations()));
}

/// The sizes at which growth shows.
inline void Sizes(benchmark::internal::Benchmark* pBenchmark) {
    pBenchmark->RangeMultiplier(10)->Range(100, 100'000);
}

}  // namespace bench

#endif
