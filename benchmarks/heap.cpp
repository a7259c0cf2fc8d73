#include "heap.h"

#include <algorithm>

#include <malloc.h>

// glibc's allocator under its other names: the definitions below replace the usual ones.
extern "C" void* __libc_malloc(std::size_t size);
extern "C" void* __libc_calloc(std::size_t count, std::size_t size);
extern "C" void* __libc_realloc(void* memory, std::size_t size);
extern "C" void __libc_free(void* memory);

namespace {

// For one thread: the benchmarks start no other.
bool isMeasuring = false;
HeapUse use;
long inUse;

void* taken(void* memory) {
    if (isMeasuring) {
        ++use.allocations;
        inUse += long(malloc_usable_size(memory));
        use.peak = std::max(use.peak, inUse);
    }
    return memory;
}

void given(void* memory) {
    if (isMeasuring) { inUse -= long(malloc_usable_size(memory)); }
}

} // namespace

extern "C" void* malloc(std::size_t size) { return taken(__libc_malloc(size)); }

extern "C" void* calloc(std::size_t count, std::size_t size) { return taken(__libc_calloc(count, size)); }

extern "C" void* realloc(void* memory, std::size_t size) {
    given(memory);
    return taken(__libc_realloc(memory, size));
}

extern "C" void free(void* memory) {
    given(memory);
    __libc_free(memory);
}

HeapUse heapUseOf(const std::function<void()>& function) {
    use = HeapUse();
    inUse = 0;
    isMeasuring = true;
    function();
    isMeasuring = false;
    return use;
}
