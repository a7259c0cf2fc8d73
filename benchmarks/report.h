#pragma once

#include "summary.h"

/** Prints the tables: a summary by operation, how times grow with the work, and each comparison. */
void printReport(const Report& report);
