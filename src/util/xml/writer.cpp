// Text form of elements. The walk keeps its own stack so that any depth of
// tree can be written, and writes into room reserved ahead, so that a piece
// costs a copy and not an append.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <memory>
#include <vector>

#include "util/byte_order.h"
#include "util/xml/block_pool.h"
#include "util/xml/char_class.h"
#include "util/xml/element.h"

namespace tvr::util::xml {

namespace {

// The longest form of one byte: "&#255;".
constexpr std::size_t kMaxEscapedByte = 6;

// The character reference of every byte value, padded to eight places so
// that one copy writes it, and its length.
struct References {
    std::array<std::array<char, 8>, 256> text{};
    std::array<std::uint8_t, 256> length{};
    constexpr References() {
        for (unsigned v = 0; v < 256; ++v) {
            auto& t = text[v];
            std::size_t n = 0;
            t[n++] = '&';
            t[n++] = '#';
            if (v >= 100) t[n++] = static_cast<char>('0' + v / 100);
            if (v >= 10) t[n++] = static_cast<char>('0' + v / 10 % 10);
            t[n++] = static_cast<char>('0' + v % 10);
            t[n++] = ';';
            length[v] = static_cast<std::uint8_t>(n);
        }
    }
};
constexpr References kReferences;

// The high bit of every byte of `x` that is not plain: below 32, above 126,
// '&' or '<'. Each test looks at all eight bytes at once. A borrow or carry
// can mark a plain byte above one that is not, so only the lowest mark, and
// no mark at all, can be trusted.
inline std::uint64_t nonPlainBits(std::uint64_t x) {
    constexpr std::uint64_t kOnes = 0x0101010101010101u;
    constexpr std::uint64_t kHigh = 0x8080808080808080u;
    const auto hasZero = [](std::uint64_t v) { return (v - kOnes) & ~v & kHigh; };
    const std::uint64_t below32 = (x - kOnes * 32) & ~x & kHigh;
    const std::uint64_t above126 = ((x + kOnes) | x) & kHigh;
    return below32 | above126 | hasZero(x ^ (kOnes * '&')) | hasZero(x ^ (kOnes * '<'));
}

inline bool plainBits(std::uint64_t x) { return nonPlainBits(x) == 0; }

// Where the first byte that is not plain stands among the eight at `s`, whose
// marks are `bad` (not zero).
inline std::size_t firstNonPlain(const char* s, std::uint64_t bad) {
#if defined(__GNUC__) || defined(__clang__)
    if (kLittleEndianHost) return static_cast<std::size_t>(__builtin_ctzll(bad)) / 8;
#else
    (void)bad;
#endif
    std::size_t k = 0;
    while (isPlain(static_cast<unsigned char>(s[k]))) ++k;
    return k;
}

// The same for the eight bytes at `s`.
inline bool plainWord(const char* s) {
    std::uint64_t x;
    std::memcpy(&x, s, 8);
    return plainBits(x);
}

// Copies a few bytes without a call: names, indents and short texts make up
// most of a document, and a call per piece costs more than the copy.
inline void copyShort(char* to, const char* from, std::size_t n) {
    if (n >= 8 && n <= 16) {
        std::memcpy(to, from, 8);
        std::memcpy(to + n - 8, from + n - 8, 8);
    } else if (n >= 4 && n < 8) {
        std::memcpy(to, from, 4);
        std::memcpy(to + n - 4, from + n - 4, 4);
    } else if (n < 4) {
        if (n == 0) return;
        to[0] = from[0];
        to[n / 2] = from[n / 2];
        to[n - 1] = from[n - 1];
    } else {
        std::memcpy(to, from, n);
    }
}

// Pieces of a finished text kept for the thread's next one: a large text's
// pieces are mapped anew by the system each time they are allocated, and
// first touching fresh pages can cost more than writing the text into them.
// Plain data, so that nothing runs at thread exit; kept for the life of the
// process like the element pool's chunks.
struct KeptPiece {
    char* data;
    std::size_t size;
};
#ifndef PLR_XML_PLAIN_HEAP
constexpr std::size_t kKeptPieces = 32;
thread_local KeptPiece keptPieces[kKeptPieces] = {};
thread_local std::size_t keptCount = 0;
#endif

// The largest kept piece when it holds at least `n` places, otherwise a new
// piece of `size`.
KeptPiece takePiece(std::size_t n, std::size_t size) {
#ifndef PLR_XML_PLAIN_HEAP
    std::size_t best = kKeptPieces;
    for (std::size_t k = 0; k < keptCount; ++k)
        if (keptPieces[k].size >= n && (best == kKeptPieces || keptPieces[k].size > keptPieces[best].size)) best = k;
    if (best != kKeptPieces) {
        const KeptPiece piece = keptPieces[best];
        keptPieces[best] = keptPieces[--keptCount];
        return piece;
    }
#endif
    return {new char[size], size};
}

void givePiece(KeptPiece piece) {
#ifndef PLR_XML_PLAIN_HEAP
    if (keptCount < kKeptPieces) {
        keptPieces[keptCount++] = piece;
        return;
    }
#endif
    delete[] piece.data;
}

// The same for fewer than eight bytes: up to eight of them, some twice, put
// in one word.
inline bool plainShort(const char* s, std::size_t n) {
    if (n == 0) return true;
    if (n >= 4) {
        std::uint32_t lo;
        std::uint32_t hi;
        std::memcpy(&lo, s, 4);
        std::memcpy(&hi, s + n - 4, 4);
        return plainBits(std::uint64_t{lo} | std::uint64_t{hi} << 32);
    }
    const std::uint64_t first = static_cast<unsigned char>(s[0]);
    const std::uint64_t middle = static_cast<unsigned char>(s[n / 2]);
    const std::uint64_t last = static_cast<unsigned char>(s[n - 1]);
    return plainBits((first * 0x0101010101010101u) ^ ((first ^ middle) << 8) ^ ((first ^ last) << 16));
}

// Gathers the text in pieces of memory that are never cleared, then appends
// it to the string in one copy of the exact size: growing the string as it
// goes would clear and copy it again at every doubling.
class Sink {
public:
    explicit Sink(std::string& out) : out_(out), start_(local_), cursor_(local_), end_(local_ + sizeof local_) {}
    ~Sink() { giveBack(); }
    Sink(const Sink&) = delete;
    Sink& operator=(const Sink&) = delete;

    // Appends everything written to the string.
    void finish() {
        full_.push_back({start_, static_cast<std::size_t>(cursor_ - start_)});
        std::size_t total = 0;
        for (const Piece& piece : full_) total += piece.used;
        out_.reserve(out_.size() + total);
        for (const Piece& piece : full_) out_.append(piece.data, piece.used);
        full_.clear();
        giveBack();
        start_ = cursor_ = local_;
        end_ = local_ + sizeof local_;
    }

    // At least `n` free places at the cursor.
    char* room(std::size_t n) {
        if (static_cast<std::size_t>(end_ - cursor_) < n) grow(n);
        return cursor_;
    }
    void advanceTo(char* p) { cursor_ = p; }

    void put(char c) { *room(1) = c, ++cursor_; }
    void put(const char* s, std::size_t n) {
        copyShort(room(n), s, n);
        cursor_ += n;
    }
    void put(const std::string& s) { put(s.data(), s.size()); }
    bool escaped(const std::string& s) { return escaped(s.data(), s.size()); }
    // In pieces, so that a long text never asks for six times its size at once.
    // Answers true when the text needed no reference.
    bool escaped(const char* s, std::size_t n) {
        if (n <= kEscapePiece) {
            char* const p = room(n * kMaxEscapedByte + kReferencePadding);
            cursor_ = writeEscaped(p, s, n);
            return static_cast<std::size_t>(cursor_ - p) == n;
        }
        while (n > 0) {
            const std::size_t piece = std::min(n, kEscapePiece);
            advanceTo(writeEscaped(room(piece * kMaxEscapedByte + kReferencePadding), s, piece));
            s += piece;
            n -= piece;
        }
        return false;
    }

    // Writes the escaped form of s[0, n) at p and answers the end.
    static char* writeEscaped(char* p, const char* s, std::size_t n) {
        if (n < 8 && plainShort(s, n)) {
            copyShort(p, s, n);
            return p + n;
        }
        const char* const end = s + n;
        // Where the current run of plain bytes began: all of it is copied
        // as it is, ending at p.
        const char* run = s;
        while (s != end) {
            if (end - s >= 8) {
                // Eight bytes checked and copied at once; a byte that is not
                // plain is then written over by its reference.
                std::uint64_t x;
                std::memcpy(&x, s, 8);
                const std::uint64_t bad = nonPlainBits(x);
                std::memcpy(p, s, 8);
                if (bad == 0) {
                    p += 8;
                    s += 8;
                    continue;
                }
                const std::size_t k = firstNonPlain(s, bad);
                p += k;
                s += k;
            } else if (end - run >= 8 && plainWord(end - 8)) {
                // A short tail of a long plain run: its last eight bytes checked
                // and copied at once, overlapping bytes already written the same.
                std::memcpy(p - (s - (end - 8)), end - 8, 8);
                p += end - s;
                break;
            } else {
                while (s != end && isPlain(static_cast<unsigned char>(*s))) *p++ = *s++;
                if (s == end) break;
            }
            const auto value = static_cast<unsigned char>(*s);
            std::memcpy(p, kReferences.text[value].data(), 8);
            p += kReferences.length[value];
            run = ++s;
        }
        return p;
    }

private:
    struct Piece {
        const char* data;
        std::size_t used;
    };

    void grow(std::size_t n) {
        full_.push_back({start_, static_cast<std::size_t>(cursor_ - start_)});
        nextSize_ = std::min(nextSize_ * 2, kLargestPiece);
        owned_.reserve(owned_.size() + 1);
        const KeptPiece piece = takePiece(n, std::max(nextSize_, n));
        owned_.push_back(piece);
        start_ = cursor_ = piece.data;
        end_ = start_ + piece.size;
    }

    void giveBack() noexcept {
        for (const KeptPiece& piece : owned_) givePiece(piece);
        owned_.clear();
    }

    static constexpr std::size_t kLargestPiece = std::size_t{4} << 20;
    static constexpr std::size_t kEscapePiece = std::size_t{1} << 16;
    // A reference is copied as eight bytes, up to two past its end.
    static constexpr std::size_t kReferencePadding = 2;

    std::string& out_;
    char local_[2048];
    std::vector<Piece> full_;
    std::vector<KeptPiece> owned_;
    std::size_t nextSize_ = 8192;
    char* start_;
    char* cursor_;
    char* end_;
};

void putAttributes(Sink& out, const Element::Attributes& attributes) {
    for (const auto& [name, value] : attributes) {
        out.put(' ');
        out.put(name);
        out.put('=');
        const bool hasDouble = std::memchr(value.data(), '"', value.size()) != nullptr;
        const bool hasSingle = hasDouble && std::memchr(value.data(), '\'', value.size()) != nullptr;
        if (hasDouble && !hasSingle) {
            out.put('\'');
            out.escaped(value);
            out.put('\'');
        } else if (hasDouble) {
            // Both quotes: double quotes around, and each '"' as a reference.
            out.put('"');
            std::string text;
            text.reserve(value.size());
            appendEscaped(text, value.data(), value.size());
            char* p = out.room(text.size() * 5);
            for (const char c : text) {
                if (c == '"') {
                    std::memcpy(p, "&#34;", 5);
                    p += 5;
                } else {
                    *p++ = c;
                }
            }
            out.advanceTo(p);
            out.put('"');
        } else {
            out.put('"');
            out.escaped(value);
            out.put('"');
        }
    }
}

// Asks for memory the walk will soon read: the tree's nodes lie wherever they
// were allocated, and waiting for each in turn costs more than writing it.
inline void prefetch(const void* p) {
#if defined(__GNUC__) || defined(__clang__)
    __builtin_prefetch(p);
#else
    (void)p;
#endif
}

// A child a few places ahead, and the children and first attribute of one
// nearer, whose own memory has had time to arrive.
void prefetchAhead(const Element::Children& kids, std::size_t next) {
    if (next + 8 < kids.size()) prefetch(kids[next + 8].get());
    if (next + 3 < kids.size()) {
        const Element& soon = *kids[next + 3];
        if (!soon.children().empty()) {
            prefetch(soon.children().data());
            prefetch(soon.children().front().get());
        }
        if (!soon.attributes().empty()) prefetch(&*soon.attributes().begin());
    }
}

// Texts and comments; other kinds that are not tags write as nothing.
void putLeaf(Sink& out, const Element& e, const char* prefix, std::size_t prefixLen) {
    if (e.kind() == kText) {
        out.escaped(e.name());
    } else if (e.kind() == kComment) {
        out.put(prefix, prefixLen);
        out.put("<!-- ", 5);
        out.escaped(e.name());
        out.put("-- >", 4);  // the space is deliberate: files of this program end comments so
    }
}

}  // namespace

void appendEscaped(std::string& out, const char* data, std::size_t size) {
    Sink sink(out);
    sink.escaped(data, size);
    sink.finish();
}

std::string escape(const std::string& text) {
    std::string out;
    appendEscaped(out, text.data(), text.size());
    return out;
}

void Element::appendTo(std::string& text, const std::string& newline, const std::string& indent,
                       const std::string& prefix) const {
    Sink out(text);
    if (kind_ != kTag) {
        putLeaf(out, *this, prefix.data(), prefix.size());
        out.finish();
        return;
    }
    struct Frame {
        const Element* element;
        std::size_t next;
        std::size_t prefixLen;
        bool textOnly;
        bool plainName;  // written as it is, so the end tag can copy it unchecked
    };
    std::vector<Frame> stack;
    // Every level's prefix is a leading part of this string.
    std::string prefixes = prefix;

    // Writes the start of a tag; pushes a frame when it has children.
    auto open = [&](const Element& e, std::size_t prefixLen) {
        out.put(prefixes.data(), prefixLen);
        out.put('<');
        const bool plainName = out.escaped(e.name_);
        if (!e.attributes_.empty()) putAttributes(out, e.attributes_);
        if (e.children_.empty()) {
            out.put("/>", 2);
            return;
        }
        out.put('>');
        const bool textOnly = e.children_.front()->kind_ == kText;
        if (!textOnly) out.put(newline);
        stack.push_back({&e, 0, prefixLen, textOnly, plainName});
    };

    open(*this, prefix.size());
    while (!stack.empty()) {
        Frame& top = stack.back();
        const Children& kids = top.element->children_;
        if (top.next < kids.size()) {
            if (top.next == 0)
                for (std::size_t k = 0; k < 8 && k < kids.size(); ++k) prefetch(kids[k].get());
            prefetchAhead(kids, top.next);
            const Element& c = *kids[top.next];
            if (top.textOnly && top.next > 0 && c.kind_ == kText && kids[top.next - 1]->kind_ == kText) out.put(' ');
            ++top.next;
            const bool textOnly = top.textOnly;
            const std::size_t childPrefixLen = top.prefixLen + indent.size();
            if (prefixes.size() < childPrefixLen) prefixes += indent;
            if (c.kind_ == kTag) {
                const std::size_t depth = stack.size();
                open(c, childPrefixLen);
                if (stack.size() > depth) continue;  // its end adds the newline
            } else {
                putLeaf(out, c, prefixes.data(), childPrefixLen);
            }
            if (!textOnly) out.put(newline);
        } else {
            if (!top.textOnly) out.put(prefixes.data(), top.prefixLen);
            out.put("</", 2);
            if (top.plainName)
                out.put(top.element->name_);
            else
                out.escaped(top.element->name_);
            out.put('>');
            stack.pop_back();
            if (!stack.empty() && !stack.back().textOnly) out.put(newline);
        }
    }
    out.finish();
}

std::string Element::toString(const std::string& newline, const std::string& indent, const std::string& prefix) const {
    std::string out;
    appendTo(out, newline, indent, prefix);
    return out;
}

bool Element::writeFile(const std::string& path) const {
    // Binary, so that the file holds exactly the bytes of the text form.
    std::ofstream file(path, std::ios::out | std::ios::binary | std::ios::trunc);
    if (!file) return false;
    file << "<?xml version=\"1.0\"?>\n";
    if (!file) return false;
    file << toString("\n", "\t", "");
    if (!file) return false;
    file.close();
    return !file.fail();
}

}  // namespace tvr::util::xml
