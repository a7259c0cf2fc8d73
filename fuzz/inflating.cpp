#include "fuzz.h"

#include <support/plainways.h>

#include <zlib.h>

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, std::size_t size)
{
    const FuzzInput input(data, size);
    int result = Z_OK;
    const QByteArray expected = inflatedPlainly(input.bytes, result);
    require(inflated(input.bytes, qMax(1, input.bytes.size())) == expected, "the result is that of a plain loop");
    if (result >= 0 || result == Z_BUF_ERROR) {
        require(inflated(input.bytes, 1 + input.variant) == expected, "the size of the pieces does not matter");
    }
    return 0;
}
