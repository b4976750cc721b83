// Reading text into elements in two passes: a tokeniser and a builder.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "util/xml/element.h"

namespace tvr::util::xml {

enum TokenType : int {
    kTokenText = 0,
    kTokenOpen = 1,
    kTokenClose = 2,
    kTokenEmptyElement = 3,
    kTokenComment = 4,
};

struct Token {
    int type = kTokenText;
    std::string text;
};

// Result codes of reading.
enum ReadResult : int {
    kReadOk = 0,
    kReadUnexpectedClose = 2,  // a close tag where an element was expected
    kReadUnclosed = 3,         // a tag never closed
    kReadMismatchedClose = 4,  // a close tag with another name
    kReadMalformed = 5,        // malformed text (also: nesting deeper than kMaxDepth)
};

// Tags nested deeper than this are refused as malformed.
constexpr std::size_t kMaxDepth = 1000;

// Splits text into tokens; stops at the end or at the first zero byte.
std::vector<Token> tokenize(const std::string& text);
std::vector<Token> tokenize(const char* data, std::size_t size);

// Builds one element from tokens[index...], advancing index past it. On error
// the element keeps what was complete when the error was met.
int readElement(const std::vector<Token>& tokens, std::size_t& index, Element& element);

// Reads the first element of a text, skipping a leading "<?xml ...?>"
// declaration. On error `element` is left empty.
int parse(const std::string& text, Element& element);
// As above; errors give an empty element.
Element parse(const std::string& text);

}  // namespace tvr::util::xml
