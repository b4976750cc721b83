// The module's allocation operators: every allocation of the module's own code
// goes to the host's memory functions, as the host expects of its plug-ins.
//
// These definitions are local to the module (the export list keeps them out of
// the dynamic symbol table), so they replace operator new only for code compiled
// into the module. On Linux the C++ runtime is a shared library with its own
// operator new, and a block allocated in one and released by the other is
// possible when a runtime template is partly inlined. That stays sound because
// both families end in malloc and free: the hosts this module is built for hand
// over malloc-compatible alloc and free functions.
//
// Before the host hands over its table (static initialisation, which this module
// keeps free of allocations) the same family is used directly: malloc and free.
// A block from that fallback released later through the host's free is therefore
// still released by the allocator that made it.
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
