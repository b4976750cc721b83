#include <gtest/gtest.h>

#include <iterator>
#include <random>

#include "util/xml/reader.h"

using namespace tvr::util::xml;

namespace {

std::string describe(const std::vector<Token>& tokens) {
    std::string out;
    for (const Token& t : tokens) out += std::to_string(t.type) + "[" + t.text + "]";
    return out;
}

int read(const std::string& text, Element& element) {
    const auto tokens = tokenize(text);
    std::size_t index = 0;
    return readElement(tokens, index, element);
}

}  // namespace

TEST(XmlTokenizer, TokenKindsAndWhitespace) {
    EXPECT_EQ(describe(tokenize("  <a x='1'>\n <b/>  text &#38;#65; </a><!-- c -- >")),
              "1[a x='1']3[b]0[  text &#65; ]2[a]4[-- c -- ]");
    // A close token ending in "/" becomes an empty-element token; comments keep it.
    EXPECT_EQ(describe(tokenize("</a/><!x/>")), "3[a]4[x/]");
    // Empty tokens are dropped; trailing whitespace is a text of its own.
    EXPECT_EQ(describe(tokenize("<></>< / >\n")), "1[ / ]0[\n]");
    // Reading stops at a zero byte; an unterminated tag runs to the end.
    EXPECT_EQ(describe(tokenize(std::string("<a>x\0<b>", 8))), "1[a]0[x]");
    EXPECT_EQ(describe(tokenize("<a b='>'")), "1[a b=']0[']");
}

TEST(XmlReader, ElementsAndQuirks) {
    Element e;
    ASSERT_EQ(read("<n b = \"2\" a='1' a='x&#38;#65;'><m/>hi<!-- c-- ></n>", e), kReadOk);
    EXPECT_EQ(e.kind(), kTag);
    EXPECT_EQ(e.name(), "n");
    EXPECT_EQ(e.attribute("b"), "2");
    EXPECT_EQ(e.attribute("a"), "x&#65;");  // values are unescaped once; a later duplicate wins
    ASSERT_EQ(e.childCount(), 3u);
    EXPECT_EQ(e.childAt(0)->name(), "m");
    EXPECT_EQ(e.childAt(1)->kind(), kText);
    EXPECT_EQ(e.childAt(2)->kind(), kComment);
    EXPECT_EQ(e.childAt(2)->name(), "-- c-- ");

    // Text is unescaped twice; names once.
    ASSERT_EQ(read("<a&#38;#66;>&#38;#65;</a&#38;#66;>", e), kReadMismatchedClose);
    ASSERT_EQ(read("<t>&#38;#65;</t>", e), kReadOk);
    EXPECT_EQ(e.text(), "A");
    ASSERT_EQ(read("<a&#66;/>", e), kReadOk);
    EXPECT_EQ(e.name(), "aB");

    // The declaration is an open tag whose attribute reading stops at '?'.
    ASSERT_EQ(read("<?xml version=\"1.0\"?>", e), kReadUnclosed);
    EXPECT_EQ(e.name(), "?xml");
    EXPECT_EQ(e.attribute("version"), "1.0");
    Element parsed = parse("<?xml version=\"1.0\"?>\n<r>\n\t<a>1</a>\n</r>\n");
    EXPECT_EQ(parsed.name(), "r");
    EXPECT_EQ(parsed.childText("a"), "1");
}

TEST(XmlReader, ResultCodes) {
    Element e;
    EXPECT_EQ(read("</a>", e), kReadUnexpectedClose);
    EXPECT_EQ(read("<a><b>", e), kReadUnclosed);
    EXPECT_EQ(read("<a></b>", e), kReadMismatchedClose);
    EXPECT_EQ(read("<a></a >", e), kReadMismatchedClose);
    EXPECT_EQ(read("", e), kReadMalformed);
    for (const char* bad : {"<a b/>", "<a b=c/>", "<a b='x/>", "<a b=>", "<a><c d></c></a>"})
        EXPECT_EQ(read(bad, e), kReadMalformed) << bad;

    // A failed read keeps what was complete; parse gives an empty element.
    EXPECT_EQ(read("<a><b/><c>t", e), kReadUnclosed);
    EXPECT_EQ(e.name(), "a");
    ASSERT_EQ(e.childCount(), 1u);
    EXPECT_EQ(e.childAt(0)->name(), "b");
    EXPECT_EQ(parse("<a><b/><c>t", e), kReadUnclosed);
    EXPECT_TRUE(e.isEmpty());
    EXPECT_EQ(parse("not xml <").kind(), kText);
    EXPECT_TRUE(parse("").isEmpty());
}

TEST(XmlReader, DepthLimit) {
    auto nested = [](std::size_t depth) {
        std::string text;
        for (std::size_t i = 0; i < depth; ++i) text += "<d>";
        text += "<leaf/>x";
        for (std::size_t i = 0; i < depth; ++i) text += "</d>";
        return text;
    };
    Element e;
    EXPECT_EQ(parse(nested(kMaxDepth), e), kReadOk);
    EXPECT_EQ(parse(nested(kMaxDepth + 1), e), kReadMalformed);
    EXPECT_EQ(parse(nested(100000), e), kReadMalformed);
}

// The one-pass reader behind parse against building from the token list, on
// seeded random markup: same result code, and the same element when it reads.
TEST(XmlReader, OnePassAgreesWithTokenListOnRandomMarkup) {
    const std::string pieces[] = {"<a>", "</a>", "<b x='1'>", "</b>", "<c/>", "<a y=\"&#60;q\" z='2'/>", "text",
                            " &#38;#65; ", "&#x41;", "&amp;", "<!-- note -- >", "<!x>", "</>", "<>", "\n\t",
                            "<a", ">", "/>", "=", "'", "\"", "&#", "<b  w = 'v' >", "</b >", "<d k=v>",
                            std::string("\0", 1), "\x80\xff", "<e\tf='g'\n/>"};
    std::mt19937 rng(5);
    for (int trial = 0; trial < 20000; ++trial) {
        std::string text;
        for (int n = 1 + static_cast<int>(rng() % 14); n > 0; --n) text += pieces[rng() % std::size(pieces)];
        if (trial % 50 == 0) text.insert(rng() % text.size(), 1, '\0');
        Element listed;
        const int want = read(text, listed);
        Element parsed;
        ASSERT_EQ(parse(text, parsed), want) << text;
        if (want == kReadOk) {
            ASSERT_EQ(parsed, listed) << text;
        } else {
            ASSERT_TRUE(parsed.isEmpty()) << text;
        }
    }
}
