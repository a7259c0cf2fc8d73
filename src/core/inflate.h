#pragma once

#include <core/orvcore_export.h>

#include <cstddef>
#include <memory>

/** @addtogroup core
 * @{ */

class QByteArray;
class QIODevice;

/**
 * Decompresses a zlib (RFC 1950) or gzip (RFC 1952) stream that comes in pieces, into a device.
 *
 * What comes out is written at once, in blocks of at most 16384 bytes; a piece needs no memory of
 * its own. Bytes behind the end of the stream are ignored. Corrupt data is one warning, and nothing
 * is written any more from there on. Whether the device took what was written is not checked.
 *
 * Thread-safety: reentrant; an object belongs to one thread at a time.
 */
class ORVCORE_EXPORT Inflate
{
public:
    /** @p device is open for writing, and stays so as long as data is added; it is not owned. */
    explicit Inflate(QIODevice& device);

    /** Writes nothing. */
    ~Inflate();

    Inflate(const Inflate&) = delete;
    Inflate& operator=(const Inflate&) = delete;

    /** Decompresses the next @p size bytes at @p data, of any number. */
    void addData(const char* data, std::size_t size);

    /** The same for a whole array. */
    Inflate& operator<<(const QByteArray& data);

private:
    struct ORVCORE_NO_EXPORT Private; // hides zlib
    const std::unique_ptr<Private> d;
};

/** @} */
