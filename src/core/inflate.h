#pragma once

#include <core/orvcore_export.h>

#include <QtGlobal>

#include <cstddef>
#include <memory>

/** @addtogroup core
 * @{ */

class QByteArray;
class QIODevice;

/**
 * Decompresses a zlib (RFC 1950) or gzip (RFC 1952) stream piece by piece and writes it to a
 * device.
 *
 * Output is written at once, in blocks of at most 16384 bytes; memory use does not depend on the
 * size of the data. Bytes after the end of the stream are ignored but counted. Corrupt data, a
 * stream that needs a dictionary, or a lack of memory logs one warning, and nothing more is
 * written. Write errors of the device are ignored.
 *
 * Thread-safety: reentrant; use an object from one thread at a time.
 */
class ORVCORE_EXPORT Inflate
{
public:
    /** @p device must be open for writing and stay open while data is added. It is not owned. */
    explicit Inflate(QIODevice& device);

    /** Writes nothing to the device. */
    ~Inflate();

    Inflate(const Inflate&) = delete;
    Inflate& operator=(const Inflate&) = delete;

    /** Decompresses the next @p size bytes of the stream; any size is allowed. */
    void addData(const char* data, std::size_t size);

    /** Calls addData() with the whole of @p data. */
    Inflate& operator<<(const QByteArray& data);

    /** Whether the end of the stream was reached, so all its data is written. */
    bool isFinished() const;

    /** Whether zlib could not start or has failed; data added later is ignored. */
    bool hasFailed() const;

    /** The number of bytes added so far after the end of the stream. */
    quint64 surplusSize() const;

private:
    struct ORVCORE_NO_EXPORT Private; // hides zlib
    const std::unique_ptr<Private> d;
};

/** @} */
