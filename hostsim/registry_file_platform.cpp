#include "registry_file_platform.h"

#include <cctype>
#include <cstring>
#include <sstream>

namespace hostsim {

namespace pf = tvr::platform;

namespace {

constexpr long kFileNotFound = 2;
constexpr long kInvalidHandle = 6;
constexpr long kMoreData = 234;
constexpr std::uint32_t kRegSz = 1;

std::string upper(std::string s) {
    for (char& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return s;
}

std::string lower(std::string s) {
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

// A quoted REGEDIT4 string from position i (at the opening quote); false if unterminated.
bool readQuoted(const std::string& line, std::size_t& i, std::string& out) {
    if (i >= line.size() || line[i] != '"') return false;
    for (++i; i < line.size(); ++i) {
        if (line[i] == '\\' && i + 1 < line.size()) {
            out += line[++i];
        } else if (line[i] == '"') {
            ++i;
            return true;
        } else {
            out += line[i];
        }
    }
    return false;
}

}  // namespace

RegistryFilePlatform::Keys RegistryFilePlatform::parse(const std::string& text) {
    Keys keys;
    std::istringstream in(text);
    std::string line, key;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.size() >= 2 && line.front() == '[' && line.back() == ']') {
            key = upper(line.substr(1, line.size() - 2));
            keys[key];
            continue;
        }
        if (key.empty()) continue;
        std::size_t i = 0;
        std::string name, value;
        if (line.compare(0, 1, "@") == 0) {
            i = 1;
        } else if (!readQuoted(line, i, name)) {
            continue;
        }
        if (i >= line.size() || line[i] != '=') continue;
        ++i;
        if (!readQuoted(line, i, value)) continue;
        keys[key][lower(name)] = value;
    }
    return keys;
}

long RegistryFilePlatform::regOpenKeyEx(pf::KeyHandle root, const char* subKey, std::uint32_t, std::uint32_t,
                                        pf::KeyHandle* result) {
    if (!result || root != pf::HKeyLocalMachine) return kFileNotFound;
    const std::string path = upper(std::string("HKEY_LOCAL_MACHINE\\") + (subKey ? subKey : ""));
    if (keys_.find(path) == keys_.end()) return kFileNotFound;
    const int handle = nextHandle_++;
    handles_[handle] = path;
    *result = reinterpret_cast<pf::KeyHandle>(static_cast<std::uintptr_t>(handle));
    return pf::ErrorSuccess;
}

long RegistryFilePlatform::regQueryValueEx(pf::KeyHandle key, const char* valueName, std::uint32_t* type,
                                           unsigned char* data, std::uint32_t* size) {
    const auto handle = handles_.find(static_cast<int>(reinterpret_cast<std::uintptr_t>(key)));
    if (handle == handles_.end()) return kInvalidHandle;
    const auto& values = keys_[handle->second];
    const auto value = values.find(lower(valueName ? valueName : ""));
    if (value == values.end()) return kFileNotFound;
    const std::uint32_t needed = static_cast<std::uint32_t>(value->second.size() + 1);
    if (type) *type = kRegSz;
    if (!size) return data ? kInvalidHandle : pf::ErrorSuccess;
    if (data && *size < needed) {
        *size = needed;
        return kMoreData;
    }
    if (data) std::memcpy(data, value->second.c_str(), needed);
    *size = needed;
    return pf::ErrorSuccess;
}

long RegistryFilePlatform::regCloseKey(pf::KeyHandle key) {
    return handles_.erase(static_cast<int>(reinterpret_cast<std::uintptr_t>(key))) ? pf::ErrorSuccess
                                                                                     : kInvalidHandle;
}

}  // namespace hostsim
