// Random trees written and read back. Only shapes the text form preserves are
// drawn: no comments (their text grows on each pass), no two texts side by
// side (they merge), no text of spaces alone (dropped), no "&#" in a text (it
// is unescaped twice), no '>' in attribute values (it ends the tag), and in
// indented output only texts that are an element's single child.
#include <gtest/gtest.h>

#include <random>

#include "util/xml/reader.h"
#include "writer_reference.h"

using namespace tvr::util::xml;

namespace {

class TreeMaker {
public:
    TreeMaker(unsigned seed, bool indented) : rng_(seed), indented_(indented) {}

    Element tree(int depth) {
        Tag tag(word("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_.:-", 1, 8));
        for (int n = pick(0, 3); n > 0; --n)
            tag.setAttribute(word("abcdefghijklmnopqrstuvwxyz_", 1, 6), bytes(0, 10, '>'));
        if (indented_ && pick(0, 3) == 0) {
            tag.addChild(Text(text()));
            return tag;
        }
        bool lastWasText = false;
        for (int n = depth > 0 ? pick(0, 4) : 0; n > 0; --n) {
            if (!indented_ && !lastWasText && pick(0, 2) == 0) {
                tag.addChild(Text(text()));
                lastWasText = true;
            } else {
                tag.appendChild(tree(depth - 1));
                lastWasText = false;
            }
        }
        return tag;
    }

private:
    int pick(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng_); }

    std::string word(const std::string& alphabet, int lo, int hi) {
        std::string out;
        for (int n = pick(lo, hi); n > 0; --n)
            out += alphabet[static_cast<std::size_t>(pick(0, static_cast<int>(alphabet.size()) - 1))];
        return out;
    }

    std::string bytes(int lo, int hi, int excluded) {
        std::string out;
        for (int n = pick(lo, hi); n > 0; --n) {
            // Mostly printable, with some controls, high bytes and zeros.
            int b = pick(0, 9) < 7 ? pick(32, 126) : pick(0, 255);
            if (b == excluded) b = 'x';
            out += static_cast<char>(b);
        }
        return out;
    }

    std::string text() {
        std::string out = bytes(1, 12, -1);
        for (std::size_t p = out.find("&#"); p != std::string::npos; p = out.find("&#"))
            out[p + 1] = '!';
        if (out.find_first_not_of(' ') == std::string::npos) out += 'z';
        return out;
    }

    std::mt19937 rng_;
    bool indented_;
};

}  // namespace

TEST(XmlRoundTrip, CompactAndIndented) {
    for (unsigned seed = 1; seed <= 300; ++seed) {
        const bool indented = seed % 2 == 0;
        const Element tree = TreeMaker(seed, indented).tree(4);
        const std::string text =
            indented ? tree.toString("\n", "\t", seed % 4 ? "  " : "") : tree.toString("", "", "");
        Element back;
        ASSERT_EQ(parse(text, back), kReadOk) << "seed " << seed << "\n" << text;
        ASSERT_EQ(back, tree) << "seed " << seed << "\n" << text << "\n" << back.toString("\n", " ", "");
    }
}

// The fast writer against the plain one on random trees of every kind of
// node, any bytes in names, texts and values, and any layout strings.
TEST(XmlWriter, AgreesWithPlainWriterOnRandomTrees) {
    std::mt19937 rng(31);
    auto bytes = [&rng](std::size_t most) {
        std::string out(rng() % (most + 1), ' ');
        for (char& c : out) c = static_cast<char>(rng() % 4 ? 32 + rng() % 95 : rng() % 256);
        return out;
    };
    for (int trial = 0; trial < 400; ++trial) {
        Tag root(bytes(6));
        std::vector<Element*> tags{&root};
        for (int n = static_cast<int>(rng() % 40); n > 0; --n) {
            Element* parent = tags[rng() % tags.size()];
            const unsigned kind = rng() % 6;
            if (kind < 2) {
                Element* tag = parent->addChild(Tag(bytes(8)));
                for (int a = static_cast<int>(rng() % 3); a > 0; --a) tag->setAttribute(bytes(4), bytes(12));
                tags.push_back(tag);
            } else if (kind < 4) {
                parent->addChild(Text(bytes(30)));
            } else if (kind == 4) {
                parent->addChild(Element(kComment, bytes(10)));
            } else {
                parent->addChild(Element(8, bytes(3)));  // a kind that writes as nothing
            }
        }
        const std::string newline = trial % 3 ? "\n" : "";
        const std::string indent = trial % 2 ? "\t" : "  ";
        const std::string prefix = bytes(2);
        std::string want;
        reference::write(want, root, newline, indent, prefix);
        ASSERT_EQ(root.toString(newline, indent, prefix), want) << trial;
        ASSERT_EQ(escape(prefix + want), [&] {
            std::string e;
            reference::escaped(e, prefix + want);
            return e;
        }());
    }
}

// A text of several megabytes goes through many pieces of memory, which the
// next text on the thread takes again: every write of it must come out whole
// and the same, into a fresh string or after text already there.
TEST(XmlWriter, LargeTextsWrittenOneAfterAnotherComeOutWhole) {
    std::mt19937 rng(8);
    Tag root("big");
    for (int n = 0; n < 20000; ++n) {
        std::string value(rng() % 600, ' ');
        for (char& c : value) c = static_cast<char>(rng() % 8 ? 'a' + rng() % 26 : rng() % 256);
        root.addChild(TagWithData("t" + std::to_string(n % 7), value));
    }
    std::string want;
    reference::write(want, root, "\n", "\t", "");
    ASSERT_GT(want.size(), std::size_t{6} << 20);
    for (int pass = 0; pass < 3; ++pass) EXPECT_EQ(root.toString("\n", "\t", ""), want) << pass;
    std::string after = "head";
    root.appendTo(after, "\n", "\t", "");
    EXPECT_EQ(after, "head" + want);

    // A text that is all references, as long as one piece of the writer: its
    // room is made to measure, and the last reference's copy must stay inside.
    std::string refs;
    for (int n = 0; n < 1 << 16; ++n) refs += "&#255;";
    EXPECT_EQ(escape(std::string(std::size_t{1} << 16, '\xff')), refs);
}
