#pragma once

#include "summary.h"

/** Writes the ratios and the growth as an SVG picture. */
void writePicture(const Report& report, const char* fileName);
