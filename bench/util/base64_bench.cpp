// Base64 throughput on inputs from 1 KiB to 16 MiB.
#include "util/base64.h"

#include <benchmark/benchmark.h>

#include <random>

namespace {

tvr::util::ByteArray randomBytes(std::size_t n) {
    std::mt19937 rng(1);
    tvr::util::ByteArray bytes(n);
    for (auto& b : bytes) {
        b = static_cast<std::uint8_t>(rng());
    }
    return bytes;
}

void BM_Base64Encode(benchmark::State& state) {
    const auto bytes = randomBytes(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        std::string text = tvr::util::Base64::encode(bytes);
        benchmark::DoNotOptimize(text.data());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * state.range(0));
}

void BM_Base64Decode(benchmark::State& state) {
    const std::string text = tvr::util::Base64::encode(randomBytes(static_cast<std::size_t>(state.range(0))));
    for (auto _ : state) {
        auto bytes = tvr::util::Base64::decode(text);
        benchmark::DoNotOptimize(bytes.data());
    }
    // Counted in decoded bytes, so both directions compare on the same data.
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * state.range(0));
}

}  // namespace

BENCHMARK(BM_Base64Encode)->RangeMultiplier(8)->Range(1 << 10, 16 << 20);
BENCHMARK(BM_Base64Decode)->RangeMultiplier(8)->Range(1 << 10, 16 << 20);
