#pragma once

#include <functional>

struct HeapUse {
    long allocations;
    long peak; ///< in bytes, above the use at the start
};

/** Calls @p function and returns its heap use. */
HeapUse heapUseOf(const std::function<void()>& function);
