#include <core/inflate.h>

#include <support/helpers.h>
#include <support/logcapture.h>

#include <dlfcn.h>
#include <sys/mman.h>
#include <tuple>
#include <zlib.h>

namespace {

// The results that zlib returns instead of its own; with Z_OK it returns its own.
int answerOfInit = Z_OK;
int answerOfInflate = Z_OK;
int streamsInUse = 0;

template <typename Function> Function zlibs(const char* name, Function) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

} // namespace

// These replace zlib's functions, also in the library.
int inflateInit2_(z_streamp stream, int windowBits, const char* version, int size) {
    if (answerOfInit != Z_OK) { return answerOfInit; }
    ++streamsInUse;
    return zlibs("inflateInit2_", inflateInit2_)(stream, windowBits, version, size);
}

int inflate(z_streamp stream, int flush) {
    const int answer = zlibs("inflate", inflate)(stream, flush);
    return answerOfInflate == Z_OK ? answer : answerOfInflate;
}

int inflateEnd(z_streamp stream) {
    --streamsInUse;
    return zlibs("inflateEnd", inflateEnd)(stream);
}

namespace {

struct Result {
    QByteArray output;
    QString state; // finished, failed, bytes after the end
};

Result inflated(const QByteArray& data, int pieceSize) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    Inflate inflate(buffer);
    inflate << QByteArray();
    for (int i = 0; i < data.size(); i += pieceSize) { inflate << data.mid(i, pieceSize); }
    return {buffer.data(), u("%1 %2 %3").arg(inflate.isFinished()).arg(inflate.hasFailed()).arg(inflate.surplusSize())};
}

/**
 * Reference implementation: zlib decompresses all data in one call. If that fails, only the whole blocks before the
 * failure count. Gives the output, zlib's result, and whether that is a failure.
 */
std::tuple<QByteArray, int, bool> expected(QByteArray data) {
    constexpr int blockSize = 16384;
    constexpr int mostPerByte = 1032; // the limit of the format
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

/** The data as a zlib stream and as a gzip stream. */
QVector<QByteArray> compressed(const QByteArray& data) {
    const QByteArray zlib = qCompress(data).mid(4); // without Qt's header
    QByteArray trailer(8, '\0');
    qToLittleEndian(quint32(crc32(0, reinterpret_cast<const Bytef*>(data.data()), uInt(data.size()))), trailer.data());
    qToLittleEndian(quint32(data.size()), trailer.data() + 4);
    return {zlib, QByteArray("\x1f\x8b\x08\0\0\0\0\0\0\x03", 10) + zlib.mid(2, zlib.size() - 6) + trailer};
}

/** A device that keeps the size of the largest block written to it. */
class BlockDevice : public QIODevice {
public:
    BlockDevice() { open(WriteOnly | Unbuffered); }

    bool refuses = false;
    qint64 largest = 0;
    qint64 total = 0;

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char*, qint64 size) override {
        largest = qMax(largest, size);
        total += size;
        return refuses ? -1 : size;
    }
};

QByteArray sampleText() {
    QByteArray text;
    for (int i = 0; text.size() < 100'000; ++i) {
        text += "line " + QByteArray::number(i * i) + (i % 7 == 0 ? "\r\n" : "\n");
    }
    return text;
}

} // namespace

class InflateTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void piecesOfAnySize() {
        LogCapture log;
        for (const int textSize : {1, 16384, 100'000}) { // the second fills a block
            const QByteArray text = sampleText().left(textSize);
            for (const QByteArray& data : compressed(text)) {
                for (const int pieceSize : {1, 7, 4096, 1'000'000}) {
                    QCOMPARE(inflated(data, pieceSize).state, u("1 0 0"));
                    QCOMPARE(inflated(data.chopped(1), pieceSize).state, u("0 0 0"));
                    const Result twice = inflated(data + data, pieceSize);
                    QCOMPARE(twice.output, text);
                    QCOMPARE(twice.state, u("1 0 %1").arg(data.size()));
                }
            }
        }
        QVERIFY(log.takeLines().isEmpty());
        QCOMPARE(inflated("no stream", 3).state, u("0 1 0"));
    }

    void blocksAreSmall() {
        for (const bool refuses : {false, true}) { // write errors of the device are ignored
            BlockDevice device;
            device.refuses = refuses;
            Inflate inflate(device);
            inflate << compressed(QByteArray(10'000'000, 'x')).first();
            QCOMPARE(device.total, 10'000'000);
            QVERIFY(device.largest <= 16384);
        }
    }

    // Cuts and corrupts the data at a hundred places, or at every byte in a long run.
    void damagedData() {
        LogCapture log;
        const QByteArray text = sampleText().left(40'000);
        for (const QByteArray& data : compressed(text)) {
            const int step = qMax(1, int(data.size()) * 2000 / testRounds() / 10);
            for (int i = 0; i < data.size(); i += step) {
                QVERIFY(text.startsWith(inflated(data.left(i), int(data.size())).output));
                QVERIFY(log.takeLines().isEmpty());
                QByteArray corrupt = data;
                corrupt[i] = char(~corrupt[i]);
                const auto [output, result, isFailure] = expected(corrupt);
                QCOMPARE(inflated(isFailure ? corrupt + data : corrupt, int(corrupt.size())).output, output);
                const QString line =
                    u("warning: void Inflate::addData(const char*, std::size_t) inflate() failed with result code %1");
                QCOMPARE(log.takeTexts(), isFailure ? QStringList(line.arg(result)) : QStringList());
            }
        }
    }

    void rareResultsOfZlib() {
        LogCapture log;
        const QString here = u("void Inflate::addData(const char*, std::size_t)");
        const QString place = u(" (src/core/inflate.cpp, %1, default)");
        const QByteArray text = sampleText().left(20'000); // two blocks
        for (const int code : {Z_NEED_DICT, Z_STREAM_ERROR, Z_DATA_ERROR, Z_MEM_ERROR, Z_ERRNO, Z_VERSION_ERROR}) {
            const bool isUnknown = code == Z_ERRNO || code == Z_VERSION_ERROR;
            answerOfInflate = code;
            QCOMPARE(inflated(compressed(text).first(), 100'000).output, isUnknown ? text : QByteArray());
            answerOfInflate = Z_OK;
            const QString line = u(isUnknown ? "debug: %1 inflate() returned unexpected result code %2%3"
                                             : "warning: %1 inflate() failed with result code %2%3");
            const QString whole = line.arg(here).arg(code).arg(place.arg(here));
            QCOMPARE(log.takeLines(), isUnknown ? QStringList({whole, whole}) : QStringList(whole));
        }
        QCOMPARE(streamsInUse, 0);
        answerOfInit = Z_MEM_ERROR;
        QCOMPARE(inflated(compressed("text").first(), 1).state, u("0 1 0"));
        answerOfInit = Z_OK;
        const QString constructor = u("Inflate::Inflate(QIODevice&)");
        const QString line = u("warning: %1 Failed to initialize inflate algorithm").arg(constructor);
        QCOMPARE(log.takeLines(), QStringList(line + place.arg(constructor)));
        QCOMPARE(streamsInUse, 0);                                             // inflateEnd() was not called
        QCOMPARE(inflated("\x78\xBB\x01\x02\x03\x04", 100).state, u("0 1 0")); // needs a dictionary
        QCOMPARE(log.takeTexts(), QStringList(u("warning: %1 inflate() failed with result code 2").arg(here)));
    }

    // A size beyond zlib's 32-bit counter or, on a 32-bit system, beyond an int.
    void hugeBlock() {
        // Only the pages that are written get memory: nothing is read after the end of the stream.
        const auto size = std::size_t(sizeof(std::size_t) > 4 ? Q_UINT64_C(0x1'0000'0001) : 0x8000'0001);
        const QByteArray data = compressed(sampleText()).last();
        void* const memory =
            mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        QVERIFY(memory != MAP_FAILED);
        std::copy(data.begin(), data.end(), static_cast<char*>(memory));
        BlockDevice device;
        Inflate(device).addData(static_cast<char*>(memory), size);
        munmap(memory, size);
        QCOMPARE(device.total, qint64(sampleText().size()));
    }
};

QTEST_APPLESS_MAIN(InflateTest)
#include "inflatetest.moc"
