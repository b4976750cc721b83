// Decoding compressed state of 1 KiB, 1 MiB and 16 MiB output, side by side
// with zlib inflating the same payload. Rows named "what | library" are the
// references scripts/bench.sh sets against the row "what".
#include <benchmark/benchmark.h>
#include <zlib.h>

#include <string>

#include "state/compressed_state.h"

using namespace tvr::plr::state;

namespace {

// Text shaped like a master's stored state.
Bytes makeState(std::size_t size) {
    std::string text;
    for (int k = 0; text.size() < size; ++k)
        text += "<node id=\"" + std::to_string(k) + "\"><objectname>Camera " + std::to_string(k % 97) +
                "</objectname><matrix>1 0 0 0 0 0.7071 -0.7071 0 0 0.7071 0.7071 0 " +
                std::to_string(k * 0.25) + " 0 " + std::to_string(k % 13) + " 1</matrix></node>\n";
    text.resize(size);
    return Bytes(text.begin(), text.end());
}

void setBytes(benchmark::State& state, std::size_t bytes) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(bytes));
}

void ownDecode(benchmark::State& state, std::size_t size, bool bitByBit) {
    const Bytes packed = compress(makeState(size));
    DecompressOptions options;
    options.bitByBit = bitByBit;
    for (auto _ : state) {
        DecompressResult out = decompress(packed, options);
        if (!out.ok()) state.SkipWithError(out.error.c_str());
        benchmark::DoNotOptimize(out.bytes.data());
    }
    setBytes(state, size);
    state.counters["ratio"] = static_cast<double>(packed.size()) / static_cast<double>(size);
}

// zlib at its default level; the output buffer is allocated per run, as the
// decoder's is.
void zlibInflate(benchmark::State& state, std::size_t size) {
    const Bytes plain = makeState(size);
    uLongf packedSize = compressBound(static_cast<uLong>(plain.size()));
    Bytes packed(packedSize);
    if (compress2(packed.data(), &packedSize, plain.data(), static_cast<uLong>(plain.size()), Z_DEFAULT_COMPRESSION) !=
        Z_OK) {
        state.SkipWithError("zlib could not compress");
        return;
    }
    packed.resize(packedSize);
    for (auto _ : state) {
        Bytes out(size);
        uLongf outSize = static_cast<uLongf>(size);
        if (uncompress(out.data(), &outSize, packed.data(), static_cast<uLong>(packed.size())) != Z_OK ||
            outSize != size)
            state.SkipWithError("zlib could not inflate");
        benchmark::DoNotOptimize(out.data());
    }
    setBytes(state, size);
    state.counters["ratio"] = static_cast<double>(packed.size()) / static_cast<double>(size);
}

void BM_StateCompress(benchmark::State& state) {
    const Bytes data = makeState(std::size_t{1} << 20);
    for (auto _ : state) benchmark::DoNotOptimize(compress(data).data());
    setBytes(state, data.size());
}

}  // namespace

int main(int argc, char** argv) {
    using benchmark::RegisterBenchmark;
    const struct {
        const char* label;
        std::size_t size;
    } sizes[] = {{"1 KiB", std::size_t{1} << 10}, {"1 MiB", std::size_t{1} << 20}, {"16 MiB", std::size_t{16} << 20}};
    for (const auto& s : sizes) {
        const std::string row = std::string("state decode ") + s.label;
        const std::size_t size = s.size;
        RegisterBenchmark(row.c_str(), [size](benchmark::State& st) { ownDecode(st, size, false); })
            ->Unit(benchmark::kMicrosecond);
        RegisterBenchmark((row + " | zlib inflate").c_str(), [size](benchmark::State& st) { zlibInflate(st, size); })
            ->Unit(benchmark::kMicrosecond);
        RegisterBenchmark((row + " | bit by bit").c_str(), [size](benchmark::State& st) { ownDecode(st, size, true); })
            ->Unit(benchmark::kMicrosecond);
    }
    RegisterBenchmark("state compress 1 MiB", BM_StateCompress)->Unit(benchmark::kMicrosecond);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
