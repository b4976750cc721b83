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

// Produces the tokens of a text one at a time; empty tokens never appear.
class TokenStream {
public:
    TokenStream(const char* data, std::size_t size)
        : data_(data), size_(findByte(data, 0, size, '\0')) {  // a zero byte ends the text
        advance();
    }

    Token* peek() { return has_ ? &token_ : nullptr; }

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
            set(type, data + i, textEnd - i, false);
            i_ = end < size ? end + 1 : size;
        } else {
            // Whitespace in front of text belongs to the text.
            const std::size_t end = findByte(data, i, size, '<');
            set(kTokenText, data + spaceStart, end - spaceStart, true);
            i_ = end;
        }
    }

    void set(int type, const char* text, std::size_t size, bool unescape) {
        if (size == 0) return;
        token_.type = type;
        token_.text.clear();
        if (unescape)
            appendUnescaped(token_.text, text, size);
        else
            token_.text.assign(text, size);
        has_ = !token_.text.empty();
    }

    const char* data_;
    std::size_t size_;
    std::size_t i_ = 0;
    Token token_;
    bool has_ = false;
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

// Tokens made on demand; their texts are moved into the elements.
class StreamSource {
public:
    explicit StreamSource(TokenStream& stream) : stream_(stream) {}
    Token* peek() { return stream_.peek(); }
    void advance() { stream_.advance(); }
    static std::string take(Token& token) { return std::move(token.text); }

private:
    TokenStream& stream_;
};

std::size_t nameEnd(const std::string& text) {
    std::size_t p = 0;
    while (p < text.size() && !isSpace(static_cast<unsigned char>(text[p]))) ++p;
    return p;
}

// The attributes of an open or empty-element token, from `p` on.
int readAttributes(const std::string& text, std::size_t p, Element::Attributes& attributes) {
    const char* s = text.data();
    const std::size_t n = text.size();
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

// A tag from an open or empty-element token: name up to the first whitespace,
// then attributes. On error the element keeps what was read.
int readTag(const Token& token, Element& element) {
    const std::size_t end = nameEnd(token.text);
    element = Element(kTag, unescaped(token.text.data(), end));
    return readAttributes(token.text, end, element.attributes());
}

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

bool isDeclaration(const Token& token) {
    const std::string& t = token.text;
    return token.type == kTokenOpen && t.compare(0, 4, "?xml") == 0 &&
           (t.size() == 4 || t[4] == '?' || isSpace(static_cast<unsigned char>(t[4])));
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
    TokenStream stream(text.data(), text.size());
    if (stream.peek() && isDeclaration(*stream.peek())) stream.advance();
    StreamSource source(stream);
    Element result;
    const int code = build(source, result);
    element = code == kReadOk ? std::move(result) : Element();
    return code;
}

Element parse(const std::string& text) {
    Element element;
    parse(text, element);
    return element;
}

}  // namespace tvr::util::xml
