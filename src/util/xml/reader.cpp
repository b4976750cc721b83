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

void pushToken(std::vector<Token>& tokens, int type, std::string text) {
    if (!text.empty()) tokens.push_back(Token{type, std::move(text)});
}

std::string unescaped(const char* data, std::size_t size) {
    std::string out;
    out.reserve(size);
    appendUnescaped(out, data, size);
    return out;
}

// Name and attributes of an open or empty-element token.
int readTagHead(const std::string& text, Element& element) {
    const char* s = text.data();
    const std::size_t n = text.size();
    std::size_t p = 0;
    while (p < n && !isSpace(static_cast<unsigned char>(s[p]))) ++p;
    element = Element(kTag, unescaped(s, p));
    Element::Attributes& attributes = element.attributes();
    for (;;) {
        while (p < n && isSpace(static_cast<unsigned char>(s[p]))) ++p;
        if (p == n || s[p] == '?') return kReadOk;  // '?' ends a declaration's attributes
        const std::size_t nameStart = p;
        while (p < n && s[p] != '=' && !isSpace(static_cast<unsigned char>(s[p]))) ++p;
        const std::size_t nameEnd = p;
        while (p < n && isSpace(static_cast<unsigned char>(s[p]))) ++p;
        if (p == n || s[p] != '=') return kReadMalformed;
        ++p;
        while (p < n && isSpace(static_cast<unsigned char>(s[p]))) ++p;
        if (p == n || (s[p] != '"' && s[p] != '\'')) return kReadMalformed;
        const char quote = s[p++];
        const std::size_t valueEnd = findByte(s, p, n, quote);
        if (valueEnd == n) return kReadMalformed;
        attributes[std::string(s + nameStart, nameEnd - nameStart)] = unescaped(s + p, valueEnd - p);
        p = valueEnd + 1;
    }
}

bool isDeclaration(const Token& token) {
    const std::string& t = token.text;
    return token.type == kTokenOpen && t.compare(0, 4, "?xml") == 0 &&
           (t.size() == 4 || t[4] == '?' || isSpace(static_cast<unsigned char>(t[4])));
}

}  // namespace

std::vector<Token> tokenize(const char* data, std::size_t size) {
    size = findByte(data, 0, size, '\0');
    std::vector<Token> tokens;
    std::size_t i = 0;
    while (i < size) {
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
            pushToken(tokens, type, std::string(data + i, textEnd - i));
            i = end < size ? end + 1 : size;
        } else {
            // Whitespace in front of text belongs to the text.
            const std::size_t end = findByte(data, i, size, '<');
            pushToken(tokens, kTokenText, unescaped(data + spaceStart, end - spaceStart));
            i = end;
        }
    }
    return tokens;
}

std::vector<Token> tokenize(const std::string& text) { return tokenize(text.data(), text.size()); }

int readElement(const std::vector<Token>& tokens, std::size_t& index, Element& element) {
    if (index >= tokens.size()) return kReadMalformed;
    const Token& first = tokens[index];
    switch (first.type) {
        case kTokenText:
            // Text was unescaped by the tokeniser already; the second pass is kept.
            element = Element(kText, unescaped(first.text.data(), first.text.size()));
            ++index;
            return kReadOk;
        case kTokenComment:
            element = Element(kComment, unescaped(first.text.data(), first.text.size()));
            ++index;
            return kReadOk;
        case kTokenClose:
            return kReadUnexpectedClose;
        case kTokenEmptyElement: {
            const int result = readTagHead(first.text, element);
            if (result == kReadOk) ++index;
            return result;
        }
        case kTokenOpen:
            break;
        default:
            return kReadMalformed;
    }

    int result = readTagHead(first.text, element);
    if (result != kReadOk) return result;
    ++index;
    // Tags still open below `element`. A child joins its parent only once it is
    // complete, so on error the element holds exactly the finished children.
    std::vector<std::unique_ptr<Element>> open;
    for (;;) {
        Element& current = open.empty() ? element : *open.back();
        if (index >= tokens.size()) return kReadUnclosed;
        const Token& token = tokens[index];
        switch (token.type) {
            case kTokenClose: {
                if (token.text != current.name()) return kReadMismatchedClose;
                ++index;
                if (open.empty()) return kReadOk;
                std::unique_ptr<Element> done = std::move(open.back());
                open.pop_back();
                (open.empty() ? element : *open.back()).adoptChild(std::move(done));
                break;
            }
            case kTokenText:
            case kTokenComment: {
                auto child = std::make_unique<Element>();
                result = readElement(tokens, index, *child);
                if (result != kReadOk) return result;
                current.adoptChild(std::move(child));
                break;
            }
            case kTokenEmptyElement: {
                auto child = std::make_unique<Element>();
                result = readTagHead(token.text, *child);
                if (result != kReadOk) return result;
                ++index;
                current.adoptChild(std::move(child));
                break;
            }
            case kTokenOpen: {
                if (open.size() + 2 > kMaxDepth) return kReadMalformed;
                auto child = std::make_unique<Element>();
                result = readTagHead(token.text, *child);
                if (result != kReadOk) return result;
                ++index;
                open.push_back(std::move(child));
                break;
            }
            default:
                return kReadMalformed;
        }
    }
}

int parse(const std::string& text, Element& element) {
    const std::vector<Token> tokens = tokenize(text);
    std::size_t index = 0;
    if (!tokens.empty() && isDeclaration(tokens.front())) index = 1;
    Element result;
    const int code = readElement(tokens, index, result);
    element = code == kReadOk ? std::move(result) : Element();
    return code;
}

Element parse(const std::string& text) {
    Element element;
    parse(text, element);
    return element;
}

}  // namespace tvr::util::xml
