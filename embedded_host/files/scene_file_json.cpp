#include "embedded_host/files/scene_file_json.h"

#include <cmath>
#include <limits>

namespace tvr::plr::embedded::scenefile {

namespace {
constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

int alphabetIndex(char c) {
    if (c >= 'A' && c <= 'Z') return c - 'A';
    if (c >= 'a' && c <= 'z') return c - 'a' + 26;
    if (c >= '0' && c <= '9') return c - '0' + 52;
    if (c == '+') return 62;
    if (c == '/') return 63;
    return -1;
}

const char* typeName(const Json& v) {
    switch (v.type()) {
    case Json::value_t::null: return "null";
    case Json::value_t::object: return "an object";
    case Json::value_t::array: return "an array";
    case Json::value_t::string: return "a string";
    case Json::value_t::boolean: return "a boolean";
    case Json::value_t::binary: return "binary data";
    case Json::value_t::discarded: return "nothing";
    default: return "a number";
    }
}
}  // namespace

bool isValidUtf8(const std::string& bytes) {
    const auto* s = reinterpret_cast<const unsigned char*>(bytes.data());
    const std::size_t n = bytes.size();
    std::size_t i = 0;
    while (i < n) {
        const unsigned char c = s[i];
        if (c < 0x80) {
            ++i;
            continue;
        }
        std::size_t extra;
        std::uint32_t cp;
        if (c >= 0xC2 && c <= 0xDF) {
            extra = 1;
            cp = c & 0x1F;
        } else if (c >= 0xE0 && c <= 0xEF) {
            extra = 2;
            cp = c & 0x0F;
        } else if (c >= 0xF0 && c <= 0xF4) {
            extra = 3;
            cp = c & 0x07;
        } else {
            return false;
        }
        if (i + extra >= n) return false;  // truncated sequence
        for (std::size_t k = 1; k <= extra; ++k) {
            if ((s[i + k] & 0xC0) != 0x80) return false;
            cp = (cp << 6) | (s[i + k] & 0x3F);
        }
        // Overlong forms, surrogates and values past U+10FFFF are not UTF-8.
        if ((extra == 2 && cp < 0x800) || (extra == 3 && cp < 0x10000) || cp > 0x10FFFF ||
            (cp >= 0xD800 && cp <= 0xDFFF))
            return false;
        i += extra + 1;
    }
    return true;
}

std::string base64Encode(const std::string& bytes) {
    std::string out;
    out.reserve((bytes.size() + 2) / 3 * 4);
    std::size_t i = 0;
    const auto byte = [&](std::size_t k) { return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[k])); };
    for (; i + 3 <= bytes.size(); i += 3) {
        const std::uint32_t v = byte(i) << 16 | byte(i + 1) << 8 | byte(i + 2);
        out += kAlphabet[v >> 18 & 63];
        out += kAlphabet[v >> 12 & 63];
        out += kAlphabet[v >> 6 & 63];
        out += kAlphabet[v & 63];
    }
    const std::size_t rest = bytes.size() - i;
    if (rest > 0) {
        const std::uint32_t v = byte(i) << 16 | (rest == 2 ? byte(i + 1) << 8 : 0);
        out += kAlphabet[v >> 18 & 63];
        out += kAlphabet[v >> 12 & 63];
        out += rest == 2 ? kAlphabet[v >> 6 & 63] : '=';
        out += '=';
    }
    return out;
}

bool base64Decode(const std::string& text, std::string* bytes) {
    if (text.size() % 4 != 0) return false;
    std::string out;
    out.reserve(text.size() / 4 * 3);
    for (std::size_t i = 0; i < text.size(); i += 4) {
        const bool last = i + 4 == text.size();
        int v[4];
        int pad = 0;
        for (int k = 0; k < 4; ++k) {
            const char c = text[i + k];
            if (c == '=' && last && k >= 2) {
                ++pad;
                v[k] = 0;
                continue;
            }
            if (pad > 0) return false;  // data after padding
            v[k] = alphabetIndex(c);
            if (v[k] < 0) return false;
        }
        const std::uint32_t w = static_cast<std::uint32_t>(v[0] << 18 | v[1] << 12 | v[2] << 6 | v[3]);
        out += static_cast<char>(w >> 16 & 0xFF);
        if (pad < 2) out += static_cast<char>(w >> 8 & 0xFF);
        if (pad < 1) out += static_cast<char>(w & 0xFF);
    }
    *bytes = std::move(out);
    return true;
}

Json encodeBytes(const std::string& bytes) {
    if (isValidUtf8(bytes)) return Json(bytes);
    Json wrapped = Json::object();
    wrapped["bytes"] = base64Encode(bytes);
    return wrapped;
}

Json encodeNumber(double value) {
    if (std::isnan(value)) return "nan";
    if (std::isinf(value)) return value > 0 ? "inf" : "-inf";
    return value;
}

[[noreturn]] void Reader::fail(const std::string& what) const {
    const std::string where = path();
    throw FormatError((where.empty() ? std::string("top level") : where) + ": " + what);
}

std::string Reader::path() const {
    std::string out;
    for (const Step& s : path_) {
        if (s.key) {
            if (!out.empty()) out += '.';
            out += s.key;
        } else {
            out += '[' + std::to_string(s.index) + ']';
        }
    }
    return out;
}

const Json& Reader::object(const Json& v) {
    if (!v.is_object()) fail(std::string("expected an object, found ") + typeName(v));
    return v;
}

const Json& Reader::array(const Json& v) {
    if (!v.is_array()) fail(std::string("expected an array, found ") + typeName(v));
    return v;
}

const Json& Reader::array(const Json& v, std::size_t size) {
    array(v);
    if (v.size() != size)
        fail("expected " + std::to_string(size) + " elements, found " + std::to_string(v.size()));
    return v;
}

const Json& Reader::member(const Json& obj, const char* key) {
    object(obj);
    const auto it = obj.find(key);
    if (it == obj.end()) fail(std::string("missing member \"") + key + "\"");
    return *it;
}

const Json* Reader::optional(const Json& obj, const char* key) {
    object(obj);
    const auto it = obj.find(key);
    return it == obj.end() ? nullptr : &*it;
}

bool Reader::boolean(const Json& v) {
    if (!v.is_boolean()) fail(std::string("expected true or false, found ") + typeName(v));
    return v.get<bool>();
}

std::int64_t Reader::int64(const Json& v) {
    if (v.is_number_integer()) {
        if (v.is_number_unsigned() && v.get<std::uint64_t>() > static_cast<std::uint64_t>(INT64_MAX))
            fail("integer out of range");
        return v.get<std::int64_t>();
    }
    fail(std::string("expected an integer, found ") + typeName(v));
}

std::int32_t Reader::int32(const Json& v) {
    const std::int64_t i = int64(v);
    if (i < INT32_MIN || i > INT32_MAX) fail("integer " + std::to_string(i) + " does not fit 32 bits");
    return static_cast<std::int32_t>(i);
}

double Reader::number(const Json& v) {
    if (v.is_number()) return v.get<double>();
    if (v.is_string()) {
        const auto& s = v.get_ref<const std::string&>();
        if (s == "nan") return std::numeric_limits<double>::quiet_NaN();
        if (s == "inf") return std::numeric_limits<double>::infinity();
        if (s == "-inf") return -std::numeric_limits<double>::infinity();
    }
    fail(std::string("expected a number, found ") + typeName(v));
}

float Reader::real(const Json& v) {
    const double d = number(v);
    if (std::isfinite(d) && std::fabs(d) > static_cast<double>(std::numeric_limits<float>::max()))
        fail("number too large for single precision");
    return static_cast<float>(d);
}

const std::string& Reader::text(const Json& v) {
    if (!v.is_string()) fail(std::string("expected a string, found ") + typeName(v));
    return v.get_ref<const std::string&>();
}

std::string Reader::bytes(const Json& v) {
    if (v.is_string()) return v.get<std::string>();
    if (v.is_object() && v.size() == 1 && v.contains("bytes")) {
        Scope s(*this, "bytes");
        std::string out;
        if (!base64Decode(text(v["bytes"]), &out)) fail("not valid base64");
        return out;
    }
    fail(std::string("expected a string or {\"bytes\": ...}, found ") + typeName(v));
}

std::int32_t Reader::int32(const Json& obj, const char* key) {
    const Json& v = member(obj, key);
    Scope s(*this, key);
    return int32(v);
}

double Reader::number(const Json& obj, const char* key) {
    const Json& v = member(obj, key);
    Scope s(*this, key);
    return number(v);
}

std::string Reader::bytes(const Json& obj, const char* key) {
    const Json& v = member(obj, key);
    Scope s(*this, key);
    return bytes(v);
}

}  // namespace tvr::plr::embedded::scenefile
