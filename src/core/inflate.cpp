#include <core/inflate.h>

#include <core/log_p.h>

#include <QByteArray>
#include <QIODevice>

#include <algorithm>
#include <limits>

#include <zlib.h>

namespace {

// 15: the largest window; 32: accept a zlib or a gzip header.
constexpr int windowBits = 15 + 32;

constexpr uInt blockSize = 16384;

} // namespace

struct Inflate::Private
{
    QIODevice& device;
    z_stream stream = {}; // zeros choose zlib's own allocator
    bool initialized = false;
    bool ok = true;
    bool finished = false;
    quint64 surplus = 0; // bytes after the end of the stream

    bool addPiece(const char* data, uInt size);
};

/** @return false after an error: no more data may be added */
bool Inflate::Private::addPiece(const char* data, uInt size)
{
    static constexpr char here[] = "void Inflate::addData(const char*, std::size_t)";
    // zlib only reads the input, but releases before 1.2.5.2 do not declare it as const.
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data));
    stream.avail_in = size;
    do {
        char block[blockSize];
        stream.next_out = reinterpret_cast<Bytef*>(block);
        stream.avail_out = blockSize;
        const int result = inflate(&stream, Z_NO_FLUSH);
        switch (result) {
        case Z_STREAM_END:
            finished = true;
            break;
        case Z_OK:
        case Z_BUF_ERROR: // no more input or no more output
            break;
        case Z_NEED_DICT:
        case Z_STREAM_ERROR:
        case Z_DATA_ERROR:
        case Z_MEM_ERROR:
            ORV_LOG(warning, here) << "inflate() failed with result code" << result;
            return false;
        default:
            ORV_LOG(debug, here) << "inflate() returned unexpected result code" << result;
            break;
        }
        if (stream.avail_out < blockSize) {
            device.write(block, blockSize - stream.avail_out);
        }
    } while (stream.avail_out == 0);
    surplus += finished ? stream.avail_in : 0;
    return true;
}

Inflate::Inflate(QIODevice& device)
    : d(new Private{device})
{
    d->initialized = inflateInit2(&d->stream, windowBits) == Z_OK;
    if (!d->initialized) {
        ORV_LOG(warning, "Inflate::Inflate(QIODevice&)")
            << "Failed to initialize inflate algorithm";
    }
}

Inflate::~Inflate()
{
    if (d->initialized) {
        inflateEnd(&d->stream);
    }
}

void Inflate::addData(const char* data, std::size_t size)
{
    // zlib counts in 32 bits.
    constexpr std::size_t largestPiece = std::numeric_limits<uInt>::max();
    while (d->initialized && d->ok && size > 0) {
        const auto pieceSize = uInt(std::min(size, largestPiece));
        d->ok = d->addPiece(data, pieceSize);
        data += pieceSize;
        size -= pieceSize;
    }
}

Inflate& Inflate::operator<<(const QByteArray& data)
{
    addData(data.constData(), std::size_t(data.size()));
    return *this;
}

bool Inflate::isFinished() const
{
    return d->finished;
}

bool Inflate::hasFailed() const
{
    return !d->initialized || !d->ok;
}

quint64 Inflate::surplusSize() const
{
    return d->surplus;
}
