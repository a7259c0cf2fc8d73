#pragma once

/** The number of heap allocations so far, of all that is linked. */
long allocationCount();
