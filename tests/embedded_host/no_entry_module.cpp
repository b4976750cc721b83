// A shared library that is not a module: it has no c4d_main.
#if defined(_WIN32)
extern "C" __declspec(dllexport) int not_an_entry() { return 0; }
#else
extern "C" __attribute__((visibility("default"))) int not_an_entry() { return 0; }
#endif
