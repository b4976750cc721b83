// The module's allocation operators: every allocation of the module's own code
// goes to the host's memory functions, as the host expects of its plug-ins.
//
// These definitions are local to the module (the export list keeps them out of
// the dynamic symbol table), so they replace operator new only for code compiled
// into the module. Where the C++ runtime is a shared library (Linux), its own
// code keeps the program's operator new, and a block made on one side may be
// released on the other when a runtime template is only partly inlined. That
// stays sound because the host's alloc and free are the program's own operator
// new and delete (the embedded host) or malloc and free, and the runtime's
// operator new is malloc underneath. On Windows the runtime is linked into the
// module, so all of it uses these operators.
//
// The program's operator new cannot be named from here: inside the module that
// name is this file's. So before the host hands over its table the fallback is
// malloc and free. Nothing in the module allocates that early (no namespace-scope
// objects that allocate; identity strings and singletons are built on first
// use), so the fallback only guards against a host calling out of order.
//
// This file is linked into the module only; tests that link the module's code
// keep their program's own operators.
#include <cstdlib>
#include <new>

#include "host_api/c4d_host_table.h"

namespace {

void* allocate(std::size_t size) noexcept {
    if (size == 0) size = 1;
    const C4D_HostTable* table = C4DOS();
    if (table && table->alloc && table->free) return table->alloc(size);
    return std::malloc(size);
}

void release(void* block) noexcept {
    if (!block) return;
    const C4D_HostTable* table = C4DOS();
    if (table && table->alloc && table->free) {
        table->free(block);
    } else {
        std::free(block);
    }
}

}  // namespace

void* operator new(std::size_t size) {
    if (void* p = allocate(size)) return p;
    throw std::bad_alloc();
}

void* operator new[](std::size_t size) {
    if (void* p = allocate(size)) return p;
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }

void operator delete(void* block) noexcept { release(block); }
void operator delete[](void* block) noexcept { release(block); }
void operator delete(void* block, std::size_t) noexcept { release(block); }
void operator delete[](void* block, std::size_t) noexcept { release(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { release(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { release(block); }
