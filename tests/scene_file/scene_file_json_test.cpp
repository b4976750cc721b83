#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "embedded_host/files/scene_file_json.h"

using namespace tvr::plr::embedded::scenefile;

TEST(SceneFileJson, AnyByteStringSurvivesDumpAndParse) {
    // Valid UTF-8 stays readable text; invalid sequences (lone lead byte, Latin-1, surrogate, overlong,
    // past U+10FFFF, cut short) are wrapped.
    const std::vector<std::string> text{"", "plain", "<xml a=\"1\">\n\t&amp;</xml>", std::string("a\0b", 3),
                                        "\xC3\xA9t\xC3\xA9", "\xF0\x9F\x98\x80"};
    const std::vector<std::string> invalid{"\xC3", "\xE9t\xE9", "\xED\xA0\x80", "\xC0\xAF", "\xF4\x90\x80\x80", "\xE2\x82"};
    for (const auto& s : text) EXPECT_TRUE(encodeBytes(s).is_string()) << s;
    for (const auto& s : invalid) EXPECT_TRUE(encodeBytes(s).is_object()) << s;
    std::vector<std::string> samples = text;
    samples.insert(samples.end(), invalid.begin(), invalid.end());
    std::mt19937 rng(11);
    std::uniform_int_distribution<int> byte(0, 255), len(0, 40);
    for (int i = 0; i < 500; ++i) {
        std::string s(len(rng), '\0');
        for (auto& c : s) c = static_cast<char>(byte(rng));
        samples.push_back(s);
    }
    for (const auto& s : samples) {
        const Json reparsed = Json::parse(encodeBytes(s).dump());  // dump throws on invalid UTF-8
        EXPECT_EQ(Reader().bytes(reparsed), s);
    }
}

TEST(SceneFileJson, Base64RejectsMalformedText) {
    std::string out = "kept";
    for (const char* bad : {"abc", "ab=c", "a===", "ab!d", "=AAA", "AA==AAAA"}) {
        EXPECT_FALSE(base64Decode(bad, &out)) << bad;
        EXPECT_EQ(out, "kept");
    }
    ASSERT_TRUE(base64Decode("", &out));
    EXPECT_EQ(out, "");
    EXPECT_EQ(base64Encode("\xff\xfe"), "//4=");
    ASSERT_TRUE(base64Decode("//4=", &out));
    EXPECT_EQ(out, "\xff\xfe");
}

TEST(SceneFileJson, NumbersKeepTheirBits) {
    Reader r;
    for (double d : {0.0, -0.0, 1.0 / 3.0, 1e-310, 1.7976931348623157e308, -2.5}) {
        const double back = r.number(Json::parse(encodeNumber(d).dump()));
        EXPECT_EQ(back, d);
        EXPECT_EQ(std::signbit(back), std::signbit(d));
    }
    for (float f : {0.1f, 1e-40f, 3.4028235e38f, -7.25f})
        EXPECT_EQ(r.real(Json::parse(encodeNumber(f).dump())), f);
    EXPECT_TRUE(std::isnan(r.number(Json::parse(encodeNumber(std::nan("")).dump()))));
    EXPECT_EQ(r.number(Json::parse(encodeNumber(-INFINITY).dump())), -INFINITY);
    EXPECT_THROW(r.real(Json(1e39)), FormatError);
    EXPECT_THROW(r.number(Json("infinity")), FormatError);
    EXPECT_THROW(r.int32(Json(2147483648LL)), FormatError);
    EXPECT_THROW(r.int32(Json(1.5)), FormatError);
    EXPECT_THROW(r.int64(Json(18446744073709551615ULL)), FormatError);
    EXPECT_EQ(r.int32(Json(-2147483648LL)), INT32_MIN);
}
