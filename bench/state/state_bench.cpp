// Decompression speed, 1 KiB to 16 MiB of output.
#include <benchmark/benchmark.h>

#include <string>

#include "state/compressed_state.h"

using namespace tvr::plr::state;

namespace {

// Text shaped like a master's stored state.
Bytes makeState(std::size_t size) {
    std::string text;
    for (int k = 0; text.size() < size; ++k)
        text += "<node id=\"" + std::to_string(k) +
                "\"><objectname>Camera " + std::to_string(k % 97) +
                "</objectname><matrix>1 0 0 0 0 0.7071 -0.7071 0 0 0.7071 0.7071 0 " +
                std::to_string(k * 0.25) + " 0 " + std::to_string(k % 13) + " 1</matrix></node>\n";
    text.resize(size);
    return Bytes(text.begin(), text.end());
}

void decode(benchmark::State& state, bool bitByBit) {
    const std::size_t size = static_cast<std::size_t>(state.range(0));
    const Bytes packed = compress(makeState(size));
    DecompressOptions options;
    options.bitByBit = bitByBit;
    for (auto _ : state) {
        DecompressResult out = decompress(packed, options);
        if (!out.ok()) state.SkipWithError(out.error.c_str());
        benchmark::DoNotOptimize(out.bytes.data());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * size));
    state.counters["ratio"] = static_cast<double>(packed.size()) / static_cast<double>(size);
}

void BM_StateDecompress(benchmark::State& state) { decode(state, false); }
void BM_StateDecompressBitByBit(benchmark::State& state) { decode(state, true); }

void BM_StateCompress(benchmark::State& state) {
    const Bytes data = makeState(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(compress(data).data());
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * data.size()));
}

}  // namespace

BENCHMARK(BM_StateDecompress)->RangeMultiplier(8)->Range(1 << 10, 1 << 24)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_StateDecompressBitByBit)->RangeMultiplier(8)->Range(1 << 10, 1 << 24)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_StateCompress)->Arg(1 << 20)->Unit(benchmark::kMicrosecond);
BENCHMARK_MAIN();
