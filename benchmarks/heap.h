#pragma once

#include <functional>

struct HeapUse {
    long allocations;
    long peak; ///< in bytes, above the use at the start
};

/** The heap use of @p function. */
HeapUse heapUseOf(const std::function<void()>& function);
