// Loaded by the platform tests through loadLibrary.
#include <cstdint>

#if defined(_WIN32)
#define TEST_EXPORT extern "C" __declspec(dllexport)
#else
#define TEST_EXPORT extern "C" __attribute__((visibility("default")))
#endif

// A window procedure that counts its messages into the caller's counter and answers 7.
namespace {
int* g_counter = nullptr;
}
TEST_EXPORT void plrTestSetCounter(int* counter) { g_counter = counter; }
TEST_EXPORT std::intptr_t plrTestWindowProc(void*, std::uint32_t, std::uintptr_t, std::intptr_t) {
    if (g_counter) ++*g_counter;
    return 7;
}
