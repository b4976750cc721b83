#include "platform/registry_data.h"

#include <cctype>
#include <cstdint>
#include <cstring>

#include "platform/error_codes.h"
#include "platform/platform.h"

namespace tvr::platform {
namespace {

std::string lower(std::string s) {
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

std::string trim(const std::string& s) {
    std::size_t b = 0, e = s.size();
    while (b < e && std::isspace(static_cast<unsigned char>(s[b]))) ++b;
    while (e > b && std::isspace(static_cast<unsigned char>(s[e - 1]))) --e;
    return s.substr(b, e - b);
}

// Reads a quoted string at text[pos] ('"' expected); \\ and \" are escapes, any other
// backslash stands for itself. Returns false when the closing quote is missing.
bool readQuoted(const std::string& text, std::size_t& pos, std::string& out) {
    if (pos >= text.size() || text[pos] != '"') return false;
    out.clear();
    for (++pos; pos < text.size(); ++pos) {
        char c = text[pos];
        if (c == '"') {
            ++pos;
            return true;
        }
        if (c == '\\' && pos + 1 < text.size() && (text[pos + 1] == '\\' || text[pos + 1] == '"')) {
            out.push_back(text[++pos]);
            continue;
        }
        out.push_back(c);
    }
    return false;
}

RegistryValue stringValue(const std::string& s) {
    RegistryValue v;
    v.type = RegSz;
    v.data.assign(s.begin(), s.end());
    v.data.push_back(0);
    return v;
}

}  // namespace

std::string RegistryData::normalise(const std::string& keyPath) {
    std::string p = lower(trim(keyPath));
    while (!p.empty() && p.back() == '\\') p.pop_back();
    return p;
}

std::vector<std::string> RegistryData::keyPaths() const {
    std::vector<std::string> paths;
    for (const auto& entry : keys_) paths.push_back(entry.first);
    return paths;
}

bool RegistryData::parse(const std::string& text) {
    std::size_t pos = 0;
    bool header = false;
    std::string section;  // normalised; empty before the first section or after a bad one
    while (pos < text.size()) {
        std::size_t end = text.find('\n', pos);
        if (end == std::string::npos) end = text.size();
        std::string line = trim(text.substr(pos, end - pos));
        pos = end + 1;
        if (line.empty() || line[0] == ';') continue;
        if (!header) {
            if (line != "REGEDIT4" && line != "Windows Registry Editor Version 5.00") return false;
            header = true;
            continue;
        }
        if (line[0] == '[') {
            section.clear();
            if (line.back() != ']' || line.size() < 3 || line[1] == '-') continue;  // deletions are not kept
            section = normalise(line.substr(1, line.size() - 2));
            if (!section.empty()) keys_[section];
            continue;
        }
        if (section.empty()) continue;
        std::size_t p = 0;
        std::string name;
        if (line[0] == '@') {
            p = 1;
        } else if (!readQuoted(line, p, name)) {
            continue;
        }
        while (p < line.size() && line[p] == ' ') ++p;
        if (p >= line.size() || line[p] != '=') continue;
        ++p;
        while (p < line.size() && line[p] == ' ') ++p;
        std::string rest = line.substr(p);
        if (!rest.empty() && rest[0] == '"') {
            std::string value;
            std::size_t q = 0;
            if (!readQuoted(rest, q, value)) continue;
            keys_[section][lower(name)] = stringValue(value);
        } else if (lower(rest.substr(0, 6)) == "dword:") {
            std::string digits = rest.substr(6);
            if (digits.empty() || digits.size() > 8) continue;
            std::uint32_t n = 0;
            bool ok = true;
            for (char c : digits) {
                if (!std::isxdigit(static_cast<unsigned char>(c))) ok = false;
                n = n * 16 + static_cast<std::uint32_t>(std::isdigit(static_cast<unsigned char>(c))
                                                            ? c - '0'
                                                            : std::tolower(static_cast<unsigned char>(c)) - 'a' + 10);
            }
            if (!ok) continue;
            setDword(section, name, n);
        }
        // hex: and other binary forms are not used here and are skipped.
    }
    return header;
}

void RegistryData::setString(const std::string& keyPath, const std::string& name, const std::string& value) {
    keys_[normalise(keyPath)][lower(name)] = stringValue(value);
}

void RegistryData::setDword(const std::string& keyPath, const std::string& name, std::uint32_t value) {
    RegistryValue v;
    v.type = RegDword;
    for (int i = 0; i < 4; ++i) v.data.push_back(static_cast<unsigned char>(value >> (8 * i)));
    keys_[normalise(keyPath)][lower(name)] = v;
}

bool RegistryData::hasKey(const std::string& keyPath) const {
    std::string k = normalise(keyPath);
    auto it = keys_.lower_bound(k);
    if (it == keys_.end()) return false;
    if (it->first == k) return true;
    return it->first.size() > k.size() && it->first.compare(0, k.size(), k) == 0 && it->first[k.size()] == '\\';
}

RegistryData::Values RegistryData::values(const std::string& keyPath) const {
    auto it = keys_.find(normalise(keyPath));
    return it == keys_.end() ? Values{} : it->second;
}

long queryRegistryValue(const RegistryValue* value, std::uint32_t* type, unsigned char* data, std::uint32_t* size) {
    if (!value) return static_cast<long>(ErrorFileNotFound);
    if (data && !size) return static_cast<long>(ErrorInvalidParameter);
    auto needed = static_cast<std::uint32_t>(value->data.size());
    if (type) *type = value->type;
    if (!size) return ErrorSuccess;
    std::uint32_t capacity = *size;
    *size = needed;
    if (!data) return ErrorSuccess;
    if (capacity < needed) return static_cast<long>(ErrorMoreData);
    if (needed) std::memcpy(data, value->data.data(), needed);
    return ErrorSuccess;
}

std::string rootKeyName(const void* key) {
    switch (reinterpret_cast<std::uintptr_t>(key)) {
    case 0x80000000u:
        return "HKEY_CLASSES_ROOT";
    case 0x80000001u:
        return "HKEY_CURRENT_USER";
    case 0x80000002u:
        return "HKEY_LOCAL_MACHINE";
    case 0x80000003u:
        return "HKEY_USERS";
    case 0x80000005u:
        return "HKEY_CURRENT_CONFIG";
    default:
        return "";
    }
}

}  // namespace tvr::platform
