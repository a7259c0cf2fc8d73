#pragma once

/** @file Every public header of the library. */

#include <core/speech/language.h>
