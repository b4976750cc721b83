// Decode arbitrary bytes, with the fast and the bit-by-bit paths and the plain
// decoder of the tests, and round-trip them through the encoder.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "state/compressed_state.h"
#include "test_support/compressed_state_reference.h"

using namespace tvr::plr::state;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    DecompressOptions options;
    options.maxOutput = 1 << 20;  // keep single runs quick; the limit logic is the same
    const DecompressResult fast = decompress(data, size, options);
    options.bitByBit = true;
    const DecompressResult slow = decompress(data, size, options);
    if (fast.error != slow.error || fast.bytes != slow.bytes) std::abort();
    if (fast.ok() && !fast.wasCompressed && fast.bytes != Bytes(data, data + size)) std::abort();
    if (fast.wasCompressed) {
        // Streams that reach the decoding itself: a whole table of two or more
        // symbols and a length within the limit.
        const std::size_t symbols = reference::u32(data + 8);
        const std::size_t length = reference::u32(data + 12);
        if (symbols >= 2 && size >= kHeaderSize + symbols * kTableEntrySize && length > 0 &&
            length <= options.maxOutput) {
            const reference::Decoded plain = reference::decode(Bytes(data, data + size));
            if (plain.error != fast.error || plain.bytes != fast.bytes) std::abort();
        }
    }

    const Bytes packed = compress(data, size);
    DecompressOptions strict;
    strict.strict = true;
    const DecompressResult back = decompress(packed, strict);
    if (!back.ok() || back.bytes != Bytes(data, data + size)) std::abort();
    return 0;
}
