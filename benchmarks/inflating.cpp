#include "comparison.h"
#include "samples.h"

#include <core/inflate.h>

#include <QIODevice>
#include <QRandomGenerator>

#include <zlib.h>

namespace {

constexpr int plainSize = 64 * 1024 * 1024;
constexpr int pieceSize = 4096;

class NullDevice : public QIODevice {
public:
    NullDevice() { open(WriteOnly | Unbuffered); }

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char*, qint64 size) override { return size; }
};

QByteArray compressed(QByteArray data, int windowBits) {
    z_stream stream = {};
    deflateInit2(&stream, 6, Z_DEFLATED, windowBits, 8, Z_DEFAULT_STRATEGY);
    QByteArray result(int(deflateBound(&stream, uLong(data.size()))), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(data.data());
    stream.avail_in = uInt(data.size());
    stream.next_out = reinterpret_cast<Bytef*>(result.data());
    stream.avail_out = uInt(result.size());
    deflate(&stream, Z_FINISH);
    result.truncate(int(stream.total_out));
    deflateEnd(&stream);
    return result;
}

/** The end of the first piece. It varies, because the alignment of the buffers changes the time by up to 4 %. */
int firstPieceEnd() {
    static int calls = 0;
    return ++calls * 1283 % pieceSize;
}

void inflateByOrv(const QByteArray& data) {
    NullDevice device;
    Inflate inflate(device);
    for (int i = 0, end = firstPieceEnd(); i < data.size(); i = end, end += pieceSize) {
        inflate.addData(data.constData() + i, std::size_t(qMin(end, data.size()) - i));
    }
}

void inflateByZlib(const QByteArray& data) {
    NullDevice device;
    z_stream stream = {};
    inflateInit2(&stream, 47);
    char block[16384];
    for (int i = 0, end = firstPieceEnd(); i < data.size(); i = end, end += pieceSize) {
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.constData() + i));
        stream.avail_in = uInt(qMin(end, data.size()) - i);
        do {
            stream.next_out = reinterpret_cast<Bytef*>(block);
            stream.avail_out = sizeof block;
            inflate(&stream, Z_NO_FLUSH);
            device.write(block, qint64(sizeof block - stream.avail_out));
        } while (stream.avail_out == 0);
    }
    inflateEnd(&stream);
}

} // namespace

void addInflating() {
    QByteArray text = sampleText(EnglishUk, 1024 * 1024, false, 1).toUtf8();
    text = text.repeated(plainSize / text.size() + 1).left(plainSize);
    QByteArray noise(plainSize, '\0');
    QRandomGenerator(1).fillRange(reinterpret_cast<quint32*>(noise.data()), plainSize / 4);
    for (const bool isText : {true, false}) {
        for (const bool isGzip : {false, true}) {
            const QByteArray data = compressed(isText ? text : noise, isGzip ? 15 + 16 : 15);
            addComparison({"inflate 64 MB", std::string(isText ? "text, " : "noise, ") + (isGzip ? "gzip" : "zlib"),
                [data] { inflateByOrv(data); }, {{"zlib", [data] { inflateByZlib(data); }, 1.02}},
                10}); // all to set up the stream
        }
    }
}
