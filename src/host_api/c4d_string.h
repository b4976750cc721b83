#pragma once
// String and Filename: UTF-8 text, exact to and from 8-bit strings.
#include <cstdio>
#include <cstring>
#include <string>

#include "host_api/c4d_types.h"

enum STRINGENCODING { St7bit = 0, St8bit = 1, StUTF8 = 2 };

class String {
public:
    String() = default;
    String(const char* s) : text_(s ? s : "") {}
    String(const std::string& s) : text_(s) {}
    String(std::string&& s) : text_(std::move(s)) {}

    LONG GetLength() const { return LONG(text_.size()); }
    Bool Content() const { return !text_.empty(); }

    // Copies into buf (at most max bytes including the terminator); answers the length copied.
    LONG GetCString(CHAR* buf, LONG max, STRINGENCODING = St8bit) const {
        if (!buf || max <= 0) return 0;
        size_t n = text_.size() < size_t(max - 1) ? text_.size() : size_t(max - 1);
        std::memcpy(buf, text_.data(), n);
        buf[n] = 0;
        return LONG(n);
    }
    LONG GetCStringLen(STRINGENCODING = St8bit) const { return LONG(text_.size()); }
    void SetCString(const CHAR* s, LONG count = -1, STRINGENCODING = St8bit) {
        if (!s) {
            text_.clear();
            return;
        }
        text_ = count < 0 ? std::string(s) : std::string(s, size_t(count));
    }

    String SubStr(LONG start, LONG count) const {
        if (start < 0 || size_t(start) >= text_.size() || count <= 0) return String();
        return String(text_.substr(size_t(start), size_t(count)));
    }
    Bool FindFirst(const String& what, LONG* pos, LONG start = 0) const {
        if (start < 0) start = 0;
        size_t p = text_.find(what.text_, size_t(start));
        if (p == std::string::npos) return false;
        if (pos) *pos = LONG(p);
        return true;
    }

    String& operator+=(const String& s) {
        text_ += s.text_;
        return *this;
    }
    friend String operator+(String a, const String& b) { return a += b; }
    friend bool operator==(const String& a, const String& b) { return a.text_ == b.text_; }
    friend bool operator!=(const String& a, const String& b) { return a.text_ != b.text_; }
    friend bool operator<(const String& a, const String& b) { return a.text_ < b.text_; }

    // The text as an 8-bit string (for code that lives outside the host boundary).
    const std::string& ToStd() const { return text_; }

private:
    std::string text_;
};

inline String LongToString(LONG v) { return String(std::to_string(v)); }
inline String RealToString(Real v) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "%g", double(v));
    return String(buf);
}

class Filename {
public:
    Filename() = default;
    Filename(const String& s) : path_(s) {}
    Filename(const char* s) : path_(s) {}

    Bool Content() const { return path_.Content(); }
    String GetString() const { return path_; }
    void SetString(const String& s) { path_ = s; }
    // Last path component (either separator counts).
    Filename GetFile() const {
        const std::string& s = path_.ToStd();
        size_t p = s.find_last_of("/\\");
        return Filename(String(p == std::string::npos ? s : s.substr(p + 1)));
    }
    Filename GetDirectory() const {
        const std::string& s = path_.ToStd();
        size_t p = s.find_last_of("/\\");
        return Filename(String(p == std::string::npos ? std::string() : s.substr(0, p)));
    }
    Filename& operator+=(const Filename& f) {
        std::string s = path_.ToStd();
        if (!s.empty() && s.back() != '/' && s.back() != '\\') s += '/';
        path_ = String(s + f.path_.ToStd());
        return *this;
    }
    friend Filename operator+(Filename a, const Filename& b) { return a += b; }
    friend bool operator==(const Filename& a, const Filename& b) { return a.path_ == b.path_; }
    friend bool operator!=(const Filename& a, const Filename& b) { return !(a == b); }

private:
    String path_;
};
