#include "util/base64.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>

namespace tvr::util {
namespace {

const std::string kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Straightforward reference: bit by bit encoding, linear search when decoding.
std::string referenceEncode(const ByteArray& in) {
    std::string out;
    for (std::size_t i = 0; i < in.size(); i += 3) {
        std::string group = "====";
        const std::size_t n = in.size() - i;
        group[0] = kAlphabet[in[i] >> 2];
        int second = (in[i] & 3) << 4;
        if (n > 1) {
            second |= in[i + 1] >> 4;
            int third = (in[i + 1] & 15) << 2;
            if (n > 2) {
                third |= in[i + 2] >> 6;
                group[3] = kAlphabet[in[i + 2] & 63];
            }
            group[2] = kAlphabet[static_cast<std::size_t>(third)];
        }
        group[1] = kAlphabet[static_cast<std::size_t>(second)];
        out += group;
    }
    return out;
}

ByteArray referenceDecode(const std::string& text) {
    ByteArray out;
    if (text.size() % 4 != 0) {
        return out;
    }
    for (std::size_t i = 0; i < text.size(); i += 4) {
        const int count = 3 - (text[i + 3] == '=') - (text[i + 2] == '=');
        int v[4] = {0, 0, 0, 0};
        for (int k = 0; k < count + 1; ++k) {
            const std::size_t at = kAlphabet.find(text[i + static_cast<std::size_t>(k)]);
            if (at == std::string::npos) {
                return ByteArray();
            }
            v[k] = static_cast<int>(at);
        }
        const std::uint8_t bytes[3] = {static_cast<std::uint8_t>((v[0] << 2) | (v[1] >> 4)),
                                       static_cast<std::uint8_t>((v[1] << 4) | (v[2] >> 2)),
                                       static_cast<std::uint8_t>((v[2] << 6) | v[3])};
        out.insert(out.end(), bytes, bytes + count);
    }
    return out;
}

ByteArray bytesOf(const std::string& s) { return ByteArray(s); }

TEST(Base64Test, KnownVectors) {
    const char* plain[] = {"", "f", "fo", "foo", "foob", "fooba", "foobar"};
    const char* coded[] = {"", "Zg==", "Zm8=", "Zm9v", "Zm9vYg==", "Zm9vYmE=", "Zm9vYmFy"};
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(Base64::encode(bytesOf(plain[i])), coded[i]);
        EXPECT_EQ(Base64::decode(coded[i]), bytesOf(plain[i]));
    }
    const ByteArray all = [] {
        ByteArray b;
        for (int i = 0; i < 256; ++i) b.push_back(static_cast<std::uint8_t>(i));
        return b;
    }();
    EXPECT_EQ(Base64::encode(all), referenceEncode(all));
    EXPECT_EQ(Base64::decode(Base64::encode(all)), all);
}

TEST(Base64Test, RandomDataOfEveryLengthRoundTrips) {
    std::mt19937 rng(99);
    for (std::size_t length = 0; length <= 300; ++length) {
        ByteArray data(length);
        for (auto& b : data) {
            b = static_cast<std::uint8_t>(rng());
        }
        const std::string text = Base64::encode(data);
        ASSERT_EQ(text, referenceEncode(data)) << "length " << length;
        ASSERT_EQ(text.size(), (length + 2) / 3 * 4);
        ASSERT_EQ(Base64::decode(text), data) << "length " << length;
    }
}

TEST(Base64Test, MalformedTextDecodesToNothing) {
    const std::string bad[] = {
        "Zm9vY",          // length 5
        "Zm9vYmF",        // length 7
        "Zm9v\nYmF",      // line break
        "Zm9v YmF",       // blank
        "Zm9vYmF\r",      // carriage return
        "AB=C",           // '=' where the third character is needed
        "Zm9vAB=C",       // ... and the good group before it is dropped too
        "A===",           // second character always needed
        "====",
        "=AAA",
        "Zm-v",           // URL-safe alphabet is not accepted
        "Zm_v",
        std::string("Zm\0v", 4),
        "Zm\xC3\xA9",
    };
    for (const std::string& text : bad) {
        EXPECT_TRUE(Base64::decode(text).empty()) << text;
        EXPECT_TRUE(referenceDecode(text).empty()) << text;
    }
}

TEST(Base64Test, GroupsStandAloneAndUnusedBitsAreIgnored) {
    // Padding in a group before the last one ends only that group.
    EXPECT_EQ(Base64::decode("Zg==Zm9v"), bytesOf("ffoo"));
    EXPECT_EQ(Base64::decode("Zm8=Zg=="), bytesOf("fof"));
    // Bits below the last byte are not checked.
    EXPECT_EQ(Base64::decode("Zh=="), bytesOf("f"));
    EXPECT_EQ(Base64::decode("Zm9="), bytesOf("fo"));
    // A fourth character after '=' in third place: the group still needs the third.
    EXPECT_TRUE(Base64::decode("Zm=v").empty());
}

TEST(Base64Test, AgreesWithReferenceOnRandomText) {
    // Mostly alphabet, with padding and a few foreign characters sprinkled in.
    std::mt19937 rng(2024);
    const std::string pool = kAlphabet + kAlphabet + "====\n -_.\x80\xff";
    for (int i = 0; i < 20000; ++i) {
        std::string text(4 * (rng() % 6), ' ');
        for (char& c : text) {
            c = pool[rng() % pool.size()];
        }
        ASSERT_EQ(Base64::decode(text), referenceDecode(text)) << text;
    }
}

TEST(Base64Test, ByteArrayCopyTo) {
    const ByteArray bytes("abc", 3);
    char buffer[4] = {'x', 'x', 'x', 'x'};
    EXPECT_FALSE(bytes.copyTo(buffer, 2));
    EXPECT_EQ(std::string(buffer, 4), "xxxx");
    EXPECT_TRUE(bytes.copyTo(buffer, 3));
    EXPECT_EQ(std::string(buffer, 4), "abcx");
    EXPECT_FALSE(bytes.copyTo(nullptr, 10));
    EXPECT_TRUE(ByteArray().copyTo(nullptr, 0));
    EXPECT_TRUE(ByteArray(nullptr, 5).empty());
}

}  // namespace
}  // namespace tvr::util
