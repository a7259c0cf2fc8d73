#include <core/inflate.h>

#include <support/helpers.h>
#include <support/logcapture.h>

#include <QBuffer>
#include <QTest>

#include <sys/mman.h>
#include <zlib.h>

namespace {

constexpr int zlibFormat = 15;
constexpr int gzipFormat = 15 + 16;

QByteArray compressed(QByteArray data, int format, QByteArray dictionary = {})
{
    z_stream stream = {};
    deflateInit2(&stream, 6, Z_DEFLATED, format, 8, Z_DEFAULT_STRATEGY);
    if (!dictionary.isEmpty()) {
        deflateSetDictionary(&stream, reinterpret_cast<Bytef*>(dictionary.data()), uInt(dictionary.size()));
    }
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

/** The plain way; @p result is the last result code. */
QByteArray inflatedPlainly(QByteArray data, int& result)
{
    z_stream stream = {};
    inflateInit2(&stream, 47);
    stream.next_in = reinterpret_cast<Bytef*>(data.data());
    stream.avail_in = uInt(data.size());
    QByteArray output;
    do {
        QByteArray block(16384, '\0');
        stream.next_out = reinterpret_cast<Bytef*>(block.data());
        stream.avail_out = uInt(block.size());
        result = inflate(&stream, Z_NO_FLUSH);
        if (result < 0 && result != Z_BUF_ERROR) {
            break;
        }
        output += block.left(block.size() - int(stream.avail_out));
    } while (stream.avail_out == 0);
    inflateEnd(&stream);
    return output;
}

QByteArray inflated(const QByteArray& data, int pieceSize)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    Inflate inflate(buffer);
    inflate << QByteArray();
    for (int i = 0; i < data.size(); i += pieceSize) {
        inflate << data.mid(i, pieceSize);
    }
    return buffer.data();
}

/** A device that keeps the size of the largest block written to it. */
class BlockDevice : public QIODevice
{
public:
    BlockDevice()
    {
        open(WriteOnly | Unbuffered);
    }

    qint64 largest = 0;
    qint64 total = 0;

protected:
    qint64 readData(char*, qint64) override
    {
        return -1;
    }
    qint64 writeData(const char*, qint64 size) override
    {
        largest = qMax(largest, size);
        total += size;
        return size;
    }
};

QByteArray sampleText()
{
    QByteArray text;
    for (int i = 0; text.size() < 100'000; ++i) {
        text += "line " + QByteArray::number(i * i) + (i % 7 == 0 ? "\r\n" : "\n");
    }
    return text;
}

} // namespace

class InflateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void piecesOfAnySize()
    {
        LogCapture log;
        const QByteArray text = sampleText();
        for (const int format : {zlibFormat, gzipFormat}) {
            const QByteArray data = compressed(text, format);
            for (const int pieceSize : {1, 7, 4096, data.size()}) {
                QCOMPARE(inflated(data, pieceSize), text);
                QCOMPARE(inflated(data + "behind the end" + data, pieceSize), text);
            }
        }
        QVERIFY(log.takeLines().isEmpty());
    }

    void blocksAreSmall()
    {
        BlockDevice device;
        Inflate inflate(device);
        inflate << compressed(QByteArray(10'000'000, 'x'), zlibFormat);
        QCOMPARE(device.total, 10'000'000);
        QCOMPARE(device.largest, 16384);
    }

    // Cut and corrupted at every byte: what comes out is what a plain loop writes up to the failure.
    void damagedData()
    {
        LogCapture log;
        const QByteArray text = sampleText().left(40'000);
        for (const int format : {zlibFormat, gzipFormat}) {
            const QByteArray data = compressed(text, format);
            const int step = qMax(1, data.size() * 2000 / testRounds() / 10);
            for (int i = 0; i < data.size(); i += step) {
                QVERIFY(text.startsWith(inflated(data.left(i), data.size())));
                QVERIFY(log.takeLines().isEmpty());
                QByteArray corrupt = data;
                corrupt[i] = char(~corrupt[i]);
                int result = Z_OK;
                const QByteArray expected = inflatedPlainly(corrupt, result);
                const bool isFailure = result < 0 && result != Z_BUF_ERROR;
                QCOMPARE(inflated(isFailure ? corrupt + data : corrupt, corrupt.size()), expected);
                QCOMPARE(log.takeTexts(),
                    isFailure ? QStringList(u("warning: void Inflate::addData(const char*, std::size_t) "
                                              "inflate() failed with result code %1")
                                                .arg(result))
                              : QStringList());
            }
        }
    }

    void missingDictionary()
    {
        LogCapture log;
        QCOMPARE(inflated(compressed("some text", zlibFormat, "text some"), 100), QByteArray());
        const QVector<LogLine> lines = log.takeLines();
        QCOMPARE(lines.size(), 1);
        const QString signature = u("void Inflate::addData(const char*, std::size_t)");
        QCOMPARE(lines[0].text, signature + u(" inflate() failed with result code 2"));
        QCOMPARE(lines[0].function, signature);
        QCOMPARE(lines[0].file, u("src/core/inflate.cpp"));
    }

    void moreThan32Bits()
    {
        // Only the first bytes are backed by memory; behind the end of the stream nothing is looked at.
        const QByteArray data = compressed(sampleText(), gzipFormat);
        const std::size_t size = sizeof(std::size_t) > 4 ? std::size_t((Q_UINT64_C(1) << 32) + 1) : 0;
        void* const memory =
            size == 0 ? MAP_FAILED
                      : mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (memory == MAP_FAILED) {
            QSKIP("no address space for that much");
        }
        std::copy(data.begin(), data.end(), static_cast<char*>(memory));
        BlockDevice device;
        Inflate inflate(device);
        inflate.addData(static_cast<char*>(memory), size);
        munmap(memory, size);
        QCOMPARE(device.total, qint64(sampleText().size()));
    }
};

QTEST_APPLESS_MAIN(InflateTest)
#include "inflatetest.moc"
