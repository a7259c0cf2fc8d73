#pragma once

#include <QByteArray>

#include <zlib.h>

/**
 * @file
 * Reference implementation of Inflate: zlib decompresses all data in one call.
 *
 * When that fails, the whole blocks before the failure count: what came with the failing one is dropped.
 */
namespace reference {

struct Inflated {
    QByteArray output;
    int result; // zlib's
    bool isFailure;
};

inline Inflated inflated(QByteArray data) {
    constexpr int blockSize = 16384;
    constexpr int mostPerByte = 1032; // is what the format allows
    QByteArray output(mostPerByte * (data.size() + 1), Qt::Uninitialized);
    z_stream stream = {};
    inflateInit2(&stream, 15 + 32); // zlib or gzip
    stream.next_in = reinterpret_cast<Bytef*>(data.data());
    stream.avail_in = uInt(data.size());
    stream.next_out = reinterpret_cast<Bytef*>(output.data());
    stream.avail_out = uInt(output.size());
    const int result = ::inflate(&stream, Z_NO_FLUSH);
    const bool isFailure = (result < 0 && result != Z_BUF_ERROR) || result == Z_NEED_DICT;
    const int size = int(stream.total_out);
    output.truncate(isFailure ? size / blockSize * blockSize : size);
    inflateEnd(&stream);
    return {output, result, isFailure};
}

} // namespace reference
