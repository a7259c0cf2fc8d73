#include "fuzz.h"

#include <reference/inflating.h>

#include <core/inflate.h>

#include <QBuffer>

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, std::size_t size) {
    const FuzzInput input(data, size);
    const auto [expected, result, isFailure] = reference::inflated(input.bytes);
    for (const int pieceSize : {qMax(1, input.bytes.size()), 1 + input.variant}) {
        QBuffer output;
        output.open(QIODevice::WriteOnly);
        Inflate inflate(output);
        for (int i = 0; i < input.bytes.size(); i += pieceSize) { inflate << input.bytes.mid(i, pieceSize); }
        const bool isWhole = pieceSize >= input.bytes.size() || !isFailure; // of a failing piece nothing is written
        require(!isWhole || output.data() == expected, "pieces of any size are inflated as in one call");
    }
    return 0;
}
