// What a token and its mark cost in memory.
#include <benchmark/benchmark.h>

#include <thread>

#include "heap.h"
#include "tiers.h"

namespace {

constexpr std::int64_t kPairs = 100'000;

// Measured once, in a thread of its own: its pools start empty.
double BytesPerPair() {
    double bytes = 0;
    std::thread([&bytes] {
        const std::vector<const char*> names = bench::Names(kPairs);
        bench::PhoneTier tier;
        const std::int64_t before = bench::BytesInUse();
        for (const char* name : names) tier.Append(name);
        bytes = static_cast<double>(bench::BytesInUse() - before) / static_cast<double>(kPairs);
    }).join();
    return bytes;
}

// "bytes": per token with four fields and its mark.
void Memory(benchmark::State& state) {
    static const double bytes = BytesPerPair();
    for (auto _ : state) benchmark::DoNotOptimize(bytes);
    state.counters["bytes"] = bytes;
}
BENCHMARK(Memory)->Iterations(1);

}  // namespace
