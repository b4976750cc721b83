// Decode arbitrary bytes, and round-trip them through the encoder.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "state/compressed_state.h"

using namespace tvr::plr::state;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    DecompressOptions options;
    options.maxOutput = 1 << 20;  // keep single runs quick; the limit logic is the same
    const DecompressResult fast = decompress(data, size, options);
    options.bitByBit = true;
    const DecompressResult slow = decompress(data, size, options);
    if (fast.error != slow.error || fast.bytes != slow.bytes) std::abort();
    if (fast.ok() && !fast.wasCompressed && fast.bytes != Bytes(data, data + size)) std::abort();

    const Bytes packed = compress(data, size);
    DecompressOptions strict;
    strict.strict = true;
    const DecompressResult back = decompress(packed, strict);
    if (!back.ok() || back.bytes != Bytes(data, data + size)) std::abort();
    return 0;
}
