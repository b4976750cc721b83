// A Platform for tests: records every call with its arguments, in order, and answers either
// from its own fake (an in-process emulation configured by the test) or by forwarding to
// another platform. Install it with setPlatform.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "platform/platform_overrides.h"
#include "test_support/message_box_records.h"

namespace tvr::platform {

struct PlatformCall {
    std::string function;           // the Win32 name: "RegOpenKeyExA", "LoadLibraryA" ...
    std::vector<std::string> args;  // strings quoted, handles and flags in hex, numbers in decimal, null as null
    std::uintptr_t result = 0;      // the answer as an integer (a handle, a count, an error code ...)
    std::string out;                // what came back through out-parameters, rendered the same way

    std::string text() const;            // Function(arg, arg, ...)
    std::string str(std::size_t i) const;  // argument i without its quotes
};

class RecordingPlatform : public Platform {
public:
    // With a target every call is forwarded to it; without, the fake answers.
    explicit RecordingPlatform(Platform* forwardTo = nullptr);
    ~RecordingPlatform() override;
    RecordingPlatform(const RecordingPlatform&) = delete;
    RecordingPlatform& operator=(const RecordingPlatform&) = delete;

    // --- the record
    const std::vector<PlatformCall>& calls() const { return calls_; }
    std::vector<std::string> transcript() const;  // text() of every call
    std::vector<std::string> functions() const;   // the function names only
    std::size_t count(const std::string& function) const;
    const PlatformCall* find(const std::string& function, std::size_t nth = 0) const;  // null if absent
    void clear() { calls_.clear(); }

    // --- the fake (no effect when forwarding)
    // Key paths start at the root name: "HKEY_LOCAL_MACHINE\SOFTWARE\...".
    void setRegistryValue(const std::string& keyPath, const std::string& name, const std::string& value);
    bool setRegistryText(const std::string& regedit4);  // replaces the whole registry
    // A library that loadLibrary finds under this path (case and slash direction do not matter).
    void addLibrary(const std::string& path, std::map<std::string, void*> symbols);
    void setMessageBoxAnswer(int answer);
    void setLastError(std::uint32_t error);
    // Timer messages of the fake's windows (pumpMessages also reaches them).
    void pumpTimers(std::uint64_t nowMs);
    std::intptr_t sendMessage(WindowHandle window, std::uint32_t msg, std::uintptr_t wParam, std::intptr_t lParam);
    std::vector<MessageBoxRecord> messageBoxes() const;
    std::size_t windowCount() const;
    std::size_t timerCount() const;
    std::size_t openKeys() const;
    std::size_t loadedLibraries() const;  // load minus free
    std::size_t liveLocalBlocks() const;
    std::string dllDirectory() const;

    // --- Platform
    PLR_PLATFORM_OVERRIDES

private:
    struct Fake;
    std::size_t begin(const char* function, std::vector<std::string> args);
    void end(std::size_t index, std::uintptr_t result, std::string out = {});
    // begin, the call on the target, end with its answer (defined and used in the .cpp only).
    template <typename Call>
    auto record(const char* function, std::vector<std::string> args, Call call);
    Platform& target();

    Platform* forward_;
    std::unique_ptr<Fake> fake_;
    std::vector<PlatformCall> calls_;
};

}  // namespace tvr::platform
