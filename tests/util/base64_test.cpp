#include "util/base64.h"

#include "test_support/base64_reference.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace tvr::util {
namespace {

using reference::kAlphabet;

TEST(Base64Test, KnownVectorsAndRandomRoundTrips) {
    const char* plain[] = {"", "f", "fo", "foo", "foob", "fooba", "foobar"};
    const char* coded[] = {"", "Zg==", "Zm8=", "Zm9v", "Zm9vYg==", "Zm9vYmE=", "Zm9vYmFy"};
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(Base64::encode(ByteArray(std::string(plain[i]))), coded[i]);
        EXPECT_EQ(Base64::decode(coded[i]), ByteArray(std::string(plain[i])));
    }
    std::mt19937 rng(99);
    for (std::size_t length = 0; length <= 300; ++length) {
        ByteArray data(length);
        for (auto& b : data) b = static_cast<std::uint8_t>(rng());
        const std::string text = Base64::encode(data);
        ASSERT_EQ(text.size(), (length + 2) / 3 * 4);
        ASSERT_EQ(Base64::decode(text), data) << "length " << length;
    }
}

TEST(Base64Test, GroupsStandAloneAndUnusedBitsAreIgnored) {
    EXPECT_EQ(Base64::decode("Zg==Zm9v"), ByteArray(std::string("ffoo")));
    EXPECT_EQ(Base64::decode("Zm8=Zg=="), ByteArray(std::string("fof")));
    EXPECT_EQ(Base64::decode("Zh=="), ByteArray(std::string("f")));
    EXPECT_EQ(Base64::decode("Zm9="), ByteArray(std::string("fo")));
}

TEST(Base64Test, AgreesWithReferenceOnRandomText) {
    std::mt19937 rng(2024);
    // Bad bytes, padding anywhere and lengths off a multiple of four all meet
    // the reference's refusal.
    const std::string pool = kAlphabet + kAlphabet + std::string("====\n -_.\x80\xff\0", 12);
    for (int i = 0; i < 20000; ++i) {
        std::string text(4 * (rng() % 6) + (i % 50 == 0 ? 1 : 0), ' ');
        for (char& c : text) c = pool[rng() % pool.size()];
        ASSERT_EQ(Base64::decode(text), reference::decode(text)) << text;
    }
}

// Long texts go through the wide paths; one damaged character or an inner
// padded group anywhere must give the same answer as the plain decoder.
TEST(Base64Test, AgreesWithReferenceOnLongTextWithDamageAnywhere) {
    std::mt19937 rng(77);
    for (int i = 0; i < 3000; ++i) {
        ByteArray data(rng() % 700);
        for (auto& b : data) b = static_cast<std::uint8_t>(rng());
        const std::string clean = Base64::encode(data);
        ASSERT_EQ(clean, reference::encode(data));
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
