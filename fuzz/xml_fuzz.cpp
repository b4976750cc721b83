// Tokenise and build arbitrary text, then write whatever was built.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "util/xml/reader.h"

using namespace tvr::util::xml;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::vector<Token> tokens = tokenize(text);
    std::size_t index = 0;
    while (index < tokens.size()) {
        Element element;
        const std::size_t before = index;
        const int result = readElement(tokens, index, element);
        if (result != kReadOk && result != kReadUnexpectedClose && result != kReadUnclosed &&
            result != kReadMismatchedClose && result != kReadMalformed)
            std::abort();
        (void)element.toString("\n", "\t", "");
        if (result != kReadOk || index == before) break;
    }

    // The streaming reader must agree with the token list on the first element.
    Element parsed;
    const int code = parse(text, parsed);
    if (!tokens.empty() && tokens.front().text.compare(0, 4, "?xml") != 0) {
        Element listed;
        std::size_t first = 0;
        if (readElement(tokens, first, listed) != code) std::abort();
        if (code == kReadOk && !(listed == parsed)) std::abort();
    }
    if (code == kReadOk) {
        // Written text need not read back the same (names are escaped, texts
        // merge), but reading it again must be safe.
        Element again;
        (void)parse(parsed.toString("", "", ""), again);
        (void)again.toString("\n", "\t", "  ");
    }
    (void)escape(text);
    (void)unescape(text);
    return 0;
}
