// A shared library that is not a module: it has no c4d_main.
extern "C" __attribute__((visibility("default"))) int not_an_entry() { return 0; }
