#pragma once

#include <functional>

struct HeapUse {
    long allocations;
    long peak; ///< in bytes, beyond what was in use before
};

/** What @p function takes from the heap. */
HeapUse heapUseOf(const std::function<void()>& function);
