#include "util/xml/reader.h"

#include <cstring>
#include <memory>

#include "util/xml/char_class.h"

namespace tvr::util::xml {

namespace {

std::size_t findByte(const char* data, std::size_t from, std::size_t size, char c) {
    const void* hit = std::memchr(data + from, c, size - from);
    return hit ? static_cast<std::size_t>(static_cast<const char*>(hit) - data) : size;
}

std::string unescaped(const char* data, std::size_t size) {
    if (!std::memchr(data, '&', size)) return std::string(data, size);
    std::string out;
    out.reserve(size);
    appendUnescaped(out, data, size);
    return out;
}

// Unescapes in place of a copy when there is nothing to replace.
std::string unescaped(std::string&& text) {
    if (!std::memchr(text.data(), '&', text.size())) return std::move(text);
    return unescaped(text.data(), text.size());
}

// The tokens of a text one at a time, as spans of the text itself: nothing
// is copied or unescaped here. Empty tokens never appear (a text token is
// never empty once unescaped either: every byte in gives at least one out).
struct RawToken {
    int type = kTokenText;
    const char* text = nullptr;
    std::size_t size = 0;
};

class RawTokenStream {
public:
    RawTokenStream(const char* data, std::size_t size)
        : data_(data), size_(findByte(data, 0, size, '\0')) {  // a zero byte ends the text
        advance();
    }

    const RawToken* peek() const { return has_ ? &token_ : nullptr; }

    void advance() {
        has_ = false;
        while (!has_ && i_ < size_) readOne();
    }

private:
    void readOne() {
        const char* data = data_;
        const std::size_t size = size_;
        std::size_t i = i_;
        const std::size_t spaceStart = i;
        while (i < size && isSpace(static_cast<unsigned char>(data[i]))) ++i;
        if (i < size && data[i] == '<') {
            // Whitespace in front of a tag is dropped.
            ++i;
            int type = kTokenOpen;
            if (i < size && data[i] == '/') {
                type = kTokenClose;
                ++i;
            } else if (i < size && data[i] == '!') {
                type = kTokenComment;
                ++i;
            }
            const std::size_t end = findByte(data, i, size, '>');
            std::size_t textEnd = end;
            if (type != kTokenComment && end < size && end > i && data[end - 1] == '/') {
                type = kTokenEmptyElement;
                --textEnd;
            }
            set(type, data + i, textEnd - i);
            i_ = end < size ? end + 1 : size;
        } else {
            // Whitespace in front of text belongs to the text.
            const std::size_t end = findByte(data, i, size, '<');
            set(kTokenText, data + spaceStart, end - spaceStart);
            i_ = end;
        }
    }

    void set(int type, const char* text, std::size_t size) {
        token_ = RawToken{type, text, size};
        has_ = size > 0;
    }

    const char* data_;
    std::size_t size_;
    std::size_t i_ = 0;
    RawToken token_;
    bool has_ = false;
};

// Tokens with their texts: a text token unescaped once, the others as written.
class TokenStream {
public:
    TokenStream(const char* data, std::size_t size) : raw_(data, size) { fill(); }
    Token* peek() { return raw_.peek() ? &token_ : nullptr; }
    void advance() {
        raw_.advance();
        fill();
    }

private:
    void fill() {
        const RawToken* raw = raw_.peek();
        if (!raw) return;
        token_.type = raw->type;
        token_.text.clear();
        if (raw->type == kTokenText)
            appendUnescaped(token_.text, raw->text, raw->size);
        else
            token_.text.assign(raw->text, raw->size);
    }

    RawTokenStream raw_;
    Token token_;
};

// Tokens from a list the caller keeps; their texts are copied.
class ListSource {
public:
    ListSource(const std::vector<Token>& tokens, std::size_t& index) : tokens_(tokens), index_(index) {}
    const Token* peek() const { return index_ < tokens_.size() ? &tokens_[index_] : nullptr; }
    void advance() { ++index_; }
    static std::string take(const Token& token) { return token.text; }

private:
    const std::vector<Token>& tokens_;
    std::size_t& index_;
};

std::size_t nameEnd(const char* s, std::size_t n) {
    std::size_t p = 0;
    while (p < n && !isSpace(static_cast<unsigned char>(s[p]))) ++p;
    return p;
}

// The attributes of an open or empty-element token, from `p` on.
int readAttributes(const char* s, std::size_t n, std::size_t p, Element::Attributes& attributes) {
    // Room for as many as there are '=' (at least one each), so the list is allocated once.
    if (p < n) {
        std::size_t equals = 0;
        for (std::size_t k = p; k < n; ++k) equals += s[k] == '=';
        attributes.reserve(equals);
    }
    for (;;) {
        while (p < n && isSpace(static_cast<unsigned char>(s[p]))) ++p;
        if (p == n || s[p] == '?') return kReadOk;  // '?' ends a declaration's attributes
        const std::size_t nameStart = p;
        while (p < n && s[p] != '=' && !isSpace(static_cast<unsigned char>(s[p]))) ++p;
        const std::size_t nameStop = p;
        while (p < n && isSpace(static_cast<unsigned char>(s[p]))) ++p;
        if (p == n || s[p] != '=') return kReadMalformed;
        ++p;
        while (p < n && isSpace(static_cast<unsigned char>(s[p]))) ++p;
        if (p == n || (s[p] != '"' && s[p] != '\'')) return kReadMalformed;
        const char quote = s[p++];
        const std::size_t valueEnd = findByte(s, p, n, quote);
        if (valueEnd == n) return kReadMalformed;
        attributes[std::string(s + nameStart, nameStop - nameStart)] = unescaped(s + p, valueEnd - p);
        p = valueEnd + 1;
    }
}

// A tag from the text of an open or empty-element token: name up to the first
// whitespace, then attributes. On error the element keeps what was read.
int readTag(const char* s, std::size_t n, Element& element) {
    const std::size_t end = nameEnd(s, n);
    element = Element(kTag, unescaped(s, end));
    return readAttributes(s, n, end, element.attributes());
}

int readTag(const Token& token, Element& element) { return readTag(token.text.data(), token.text.size(), element); }

std::unique_ptr<Element> leafOf(int type, std::string text) {
    // Text was unescaped by the tokeniser already; the second pass is kept.
    return std::make_unique<Element>(type == kTokenText ? kText : kComment, unescaped(std::move(text)));
}

template <class Source>
int build(Source& source, Element& element) {
    auto* first = source.peek();
    if (!first) return kReadMalformed;
    switch (first->type) {
    case kTokenText:
    case kTokenComment: {
        std::unique_ptr<Element> leaf = leafOf(first->type, Source::take(*first));
        element = std::move(*leaf);
        source.advance();
        return kReadOk;
    }
    case kTokenClose:
        return kReadUnexpectedClose;
    case kTokenEmptyElement: {
        const int result = readTag(*first, element);
        if (result == kReadOk) source.advance();
        return result;
    }
    case kTokenOpen:
        break;
    default:
        return kReadMalformed;
    }

    int result = readTag(*first, element);
    if (result != kReadOk) return result;
    source.advance();
    // Tags still open below `element`. A child joins its parent only once it is
    // complete, so on error the element holds exactly the finished children.
    std::vector<std::unique_ptr<Element>> open;
    for (;;) {
        Element& current = open.empty() ? element : *open.back();
        auto* token = source.peek();
        if (!token) return kReadUnclosed;
        switch (token->type) {
        case kTokenClose: {
            if (token->text != current.name()) return kReadMismatchedClose;
            source.advance();
            if (open.empty()) return kReadOk;
            std::unique_ptr<Element> done = std::move(open.back());
            open.pop_back();
            (open.empty() ? element : *open.back()).adoptChild(std::move(done));
            break;
        }
        case kTokenText:
        case kTokenComment:
            current.adoptChild(leafOf(token->type, Source::take(*token)));
            source.advance();
            break;
        case kTokenEmptyElement:
        case kTokenOpen: {
            const bool opens = token->type == kTokenOpen;
            if (opens && open.size() + 2 > kMaxDepth) return kReadMalformed;
            auto child = std::make_unique<Element>();
            result = readTag(*token, *child);
            if (result != kReadOk) return result;
            source.advance();
            if (opens)
                open.push_back(std::move(child));
            else
                current.adoptChild(std::move(child));
            break;
        }
        default:
            return kReadMalformed;
        }
    }
}

bool isDeclaration(const RawToken& token) {
    const char* t = token.text;
    return token.type == kTokenOpen && token.size >= 4 && std::memcmp(t, "?xml", 4) == 0 &&
           (token.size == 4 || t[4] == '?' || isSpace(static_cast<unsigned char>(t[4])));
}

// The one-pass reader behind parse: tokens stay spans of the text, strings are
// made once each, and a tag's children are gathered and handed over in one
// piece when it closes. Gives the same element and result as building from
// the token list; on error the caller drops what was built.
int buildFromText(RawTokenStream& tokens, Element& element) {
    const RawToken* first = tokens.peek();
    if (!first) return kReadMalformed;
    switch (first->type) {
    case kTokenText:
        element = Element(kText, unescaped(unescaped(first->text, first->size)));
        return kReadOk;
    case kTokenComment:
        element = Element(kComment, unescaped(first->text, first->size));
        return kReadOk;
    case kTokenClose:
        return kReadUnexpectedClose;
    case kTokenEmptyElement:
        return readTag(first->text, first->size, element);
    case kTokenOpen:
        break;
    default:
        return kReadMalformed;
    }
    int result = readTag(first->text, first->size, element);
    if (result != kReadOk) return result;
    tokens.advance();

    // Tags open below `element`, and where each one's children start in `pending`.
    struct Open {
        std::unique_ptr<Element> element;
        std::size_t firstChild;
    };
    std::vector<Open> open;
    Element::Children pending;
    std::size_t firstChild = 0;  // of the innermost open tag
    for (;;) {
        Element& current = open.empty() ? element : *open.back().element;
        const RawToken* token = tokens.peek();
        if (!token) return kReadUnclosed;
        switch (token->type) {
        case kTokenClose: {
            const std::string& name = current.name();
            if (token->size != name.size() || std::memcmp(token->text, name.data(), name.size()) != 0)
                return kReadMismatchedClose;
            tokens.advance();
            Element::Children children;
            children.reserve(pending.size() - firstChild);
            for (std::size_t k = firstChild; k < pending.size(); ++k) children.push_back(std::move(pending[k]));
            pending.resize(firstChild);
            current.adoptChildren(std::move(children));
            if (open.empty()) return kReadOk;
            pending.push_back(std::move(open.back().element));
            firstChild = open.back().firstChild;
            open.pop_back();
            break;
        }
        case kTokenText:
            pending.push_back(std::make_unique<Element>(kText, unescaped(unescaped(token->text, token->size))));
            tokens.advance();
            break;
        case kTokenComment:
            pending.push_back(std::make_unique<Element>(kComment, unescaped(token->text, token->size)));
            tokens.advance();
            break;
        case kTokenEmptyElement:
        case kTokenOpen: {
            const bool opens = token->type == kTokenOpen;
            if (opens && open.size() + 2 > kMaxDepth) return kReadMalformed;
            const std::size_t end = nameEnd(token->text, token->size);
            auto child = std::make_unique<Element>(kTag, unescaped(token->text, end));
            result = readAttributes(token->text, token->size, end, child->attributes());
            if (result != kReadOk) return result;
            tokens.advance();
            if (opens) {
                open.push_back({std::move(child), firstChild});
                firstChild = pending.size();
            } else {
                pending.push_back(std::move(child));
            }
            break;
        }
        default:
            return kReadMalformed;
        }
    }
}

}  // namespace

std::vector<Token> tokenize(const char* data, std::size_t size) {
    std::vector<Token> tokens;
    for (TokenStream stream(data, size); Token* token = stream.peek(); stream.advance())
        tokens.push_back(std::move(*token));
    return tokens;
}

std::vector<Token> tokenize(const std::string& text) { return tokenize(text.data(), text.size()); }

int readElement(const std::vector<Token>& tokens, std::size_t& index, Element& element) {
    ListSource source(tokens, index);
    return build(source, element);
}

int parse(const std::string& text, Element& element) {
    RawTokenStream tokens(text.data(), text.size());
    if (tokens.peek() && isDeclaration(*tokens.peek())) tokens.advance();
    Element result;
    const int code = buildFromText(tokens, result);
    element = code == kReadOk ? std::move(result) : Element();
    return code;
}

Element parse(const std::string& text) {
    Element element;
    parse(text, element);
    return element;
}

}  // namespace tvr::util::xml
