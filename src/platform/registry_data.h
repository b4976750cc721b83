// An in-memory registry: keys and values read from a REGEDIT4 text or set in code,
// and the value-query rules of RegQueryValueExA.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/platform.h"

namespace tvr::platform {

struct RegistryValue {
    std::uint32_t type = 0;           // RegSz or RegDword
    std::vector<unsigned char> data;  // REG_SZ data includes the terminating zero
};

// Key paths are full ("HKEY_LOCAL_MACHINE\SOFTWARE\..."); names compare without regard to case.
class PLR_PLATFORM_EXPORT RegistryData {
public:
    using Values = std::map<std::string, RegistryValue>;  // by lower-case value name ("" = default)

    // Reads a REGEDIT4 text; lines that do not parse are skipped. False when the header is missing.
    bool parse(const std::string& text);

    void setString(const std::string& keyPath, const std::string& name, const std::string& value);
    void setDword(const std::string& keyPath, const std::string& name, std::uint32_t value);

    // A key exists when it or any key below it was named.
    bool hasKey(const std::string& keyPath) const;
    // The values of a key (empty for a missing key).
    Values values(const std::string& keyPath) const;
    // Every key named, by its normalised path.
    std::vector<std::string> keyPaths() const;
    void clear() { keys_.clear(); }

    static std::string normalise(const std::string& keyPath);

private:
    std::map<std::string, Values> keys_;  // by normalised path
};

// Copies a value the way RegQueryValueExA does: *size in is the buffer's capacity, out the
// value's size; a null data pointer asks for the size only. Answers a Win32 error code.
long queryRegistryValue(const RegistryValue* value, std::uint32_t* type, unsigned char* data, std::uint32_t* size);

// The name of a predefined root key (HKEY_LOCAL_MACHINE ...), or "" for other handles.
std::string rootKeyName(const void* key);

}  // namespace tvr::platform
