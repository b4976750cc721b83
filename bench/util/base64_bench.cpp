// Base64 of 16 MiB both ways, side by side with a plain copy of the same bytes.
// Rows named "what | reference" are set against the row "what" by
// scripts/bench.sh.
#include <benchmark/benchmark.h>

#include <cstring>
#include <random>

#include "util/base64.h"

namespace {

constexpr std::size_t kSize = std::size_t{16} << 20;

const tvr::util::ByteArray& randomBytes() {
    static const tvr::util::ByteArray bytes = [] {
        std::mt19937 rng(1);
        tvr::util::ByteArray b(kSize);
        for (auto& x : b) x = static_cast<std::uint8_t>(rng());
        return b;
    }();
    return bytes;
}

// Counted in decoded bytes, so both directions compare on the same data.
void setBytes(benchmark::State& state) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(kSize));
}

void encode(benchmark::State& state) {
    const auto& bytes = randomBytes();
    for (auto _ : state) {
        std::string text = tvr::util::Base64::encode(bytes);
        benchmark::DoNotOptimize(text.data());
    }
    setBytes(state);
}

void decode(benchmark::State& state) {
    const std::string text = tvr::util::Base64::encode(randomBytes());
    for (auto _ : state) {
        auto bytes = tvr::util::Base64::decode(text);
        benchmark::DoNotOptimize(bytes.data());
    }
    setBytes(state);
}

// A fresh buffer and one copy: what any encoder at least has to do.
void copy(benchmark::State& state) {
    const auto& bytes = randomBytes();
    for (auto _ : state) {
        tvr::util::ByteArray out(bytes.size());
        std::memcpy(out.data(), bytes.data(), bytes.size());
        benchmark::DoNotOptimize(out.data());
    }
    setBytes(state);
}

}  // namespace

int main(int argc, char** argv) {
    using benchmark::RegisterBenchmark;
    RegisterBenchmark("base64 encode 16 MiB", encode)->Unit(benchmark::kMicrosecond);
    RegisterBenchmark("base64 encode 16 MiB | memcpy", copy)->Unit(benchmark::kMicrosecond);
    RegisterBenchmark("base64 decode 16 MiB", decode)->Unit(benchmark::kMicrosecond);
    RegisterBenchmark("base64 decode 16 MiB | memcpy", copy)->Unit(benchmark::kMicrosecond);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
