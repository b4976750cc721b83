// Small helpers for writing SVG text by hand: numbers with a fixed number of
// decimals and names escaped for XML.
#pragma once

#include <cmath>
#include <cstdio>
#include <string>

namespace hostsim::svg {

// Two decimals are finer than a pixel; non-finite values (a broken matrix)
// are drawn at 0 rather than written as text no viewer reads.
inline std::string num(double v) {
    if (!std::isfinite(v)) v = 0.0;
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.2f", v);
    return buf;
}

inline std::string escape(const std::string& text) {
    std::string out;
    for (char c : text) {
        switch (c) {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '"': out += "&quot;"; break;
        default:
            // Control characters are not allowed in XML 1.0 text.
            if (static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n') out += '?';
            else out += c;
        }
    }
    return out;
}

}  // namespace hostsim::svg
