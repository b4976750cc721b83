#include "util/base64.h"

#include "test_support/base64_reference.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace tvr::util {
namespace {

using reference::kAlphabet;

TEST(Base64Test, KnownVectors) {
    const char* plain[] = {"", "f", "fo", "foo", "foob", "fooba", "foobar"};
    const char* coded[] = {"", "Zg==", "Zm8=", "Zm9v", "Zm9vYg==", "Zm9vYmE=", "Zm9vYmFy"};
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(Base64::encode(ByteArray(std::string(plain[i]))), coded[i]);
        EXPECT_EQ(Base64::decode(coded[i]), ByteArray(std::string(plain[i])));
    }
}

TEST(Base64Test, AgreesWithReferenceOnRandomText) {
    std::mt19937 rng(2024);
    // Bad bytes, padding anywhere (padded groups may stand inside the text; their
    // unused bits are ignored) and lengths off a multiple of four all meet the reference.
    const std::string pool = kAlphabet + kAlphabet + std::string("====\n -_.\x80\xff\0", 12);
    for (int i = 0; i < 20000; ++i) {
        std::string text(4 * (rng() % 6) + (i % 50 == 0 ? 1 : 0), ' ');
        for (char& c : text) c = pool[rng() % pool.size()];
        ASSERT_EQ(Base64::decode(text), reference::decode(text)) << text;
    }
}

// Texts of any length go through the wide paths: clean ones decode to their bytes, and one
// damaged character or an inner padded group anywhere gives the plain decoder's answer.
TEST(Base64Test, AgreesWithReferenceOnLongTextWithDamageAnywhere) {
    std::mt19937 rng(77);
    for (int i = 0; i < 3000; ++i) {
        ByteArray data(rng() % 700);
        for (auto& b : data) b = static_cast<std::uint8_t>(rng());
        const std::string clean = Base64::encode(data);
        ASSERT_EQ(clean, reference::encode(data));
        if (i % 3 == 0) {
            ASSERT_EQ(Base64::decode(clean), data) << i;
        }
        std::string text = clean;
        if (!text.empty() && i % 3 != 0) {
            const std::size_t at = rng() % text.size();
            const char damage[] = {'=', '\n', '-', '\x80', '\0', kAlphabet[rng() % 64]};
            text[at] = damage[rng() % sizeof damage];
            if (i % 3 == 2 && at % 4 == 3) text[at - 1] = '=';
        }
        ASSERT_EQ(Base64::decode(text), reference::decode(text)) << i;
    }
}

TEST(Base64Test, CopyToNeedsRoomForEverything) {
    const ByteArray bytes("abc", 3);
    char buffer[4] = {'x', 'x', 'x', 'x'};
    EXPECT_FALSE(bytes.copyTo(buffer, 2));
    EXPECT_EQ(std::string(buffer, 4), "xxxx");
    EXPECT_TRUE(bytes.copyTo(buffer, 3));
    EXPECT_EQ(std::string(buffer, 4), "abcx");
    EXPECT_FALSE(bytes.copyTo(nullptr, 10));
    EXPECT_TRUE(ByteArray().copyTo(nullptr, 0));
}

}  // namespace
}  // namespace tvr::util
