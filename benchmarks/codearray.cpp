#include "codearray.h"

QByteArray calledCodeOf(int value) { return codeOf(value); }
