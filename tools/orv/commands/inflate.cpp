#include "commands/commands.h"
#include "shell/commandline.h"
#include "shell/input.h"
#include "shell/output.h"

#include <core/inflate.h>

#include <QFileInfo>
#include <QSaveFile>

#include <memory>

#include <unistd.h>

namespace {

constexpr int blockSize = 64 * 1024;

// Longer than any field of a gzip header that goes by its length.
constexpr int probeSize = 128 * 1024;

/** Hands on what is written until the input is over; then only notes whether there is more. */
class Gate : public QIODevice
{
public:
    /** Without a target, everything is dropped. */
    explicit Gate(QIODevice* target)
        : target(target)
    {
        open(WriteOnly | Unbuffered);
    }

    bool isOver = false;
    bool hasFailed = false;
    bool hasSurplus = false;

protected:
    qint64 readData(char*, qint64) override
    {
        return -1;
    }

    qint64 writeData(const char* data, qint64 size) override
    {
        if (isOver) {
            hasSurplus = true;
        } else if (target != nullptr && target->write(data, size) != size) {
            hasFailed = true;
        }
        return size;
    }

private:
    QIODevice* const target;
};

/**
 * Decompresses, and finds out whether the stream was whole, which the library does not tell.
 *
 * Behind its end a stream ignores whatever comes, but within it no two different bytes can both go
 * on without a sign. So the stream is decompressed twice, and in the end the one is fed zeros and
 * the other ones: that neither fails nor yields anything is what only an ended stream does.
 */
class Decompressor
{
public:
    explicit Decompressor(QIODevice& target)
        : output(&target)
    {}

    /** @throw Failure when the target cannot be written */
    void add(const QByteArray& data)
    {
        outputStream << data;
        shadowStream << data;
        if (output.hasFailed) {
            throw Failure{QStringLiteral("cannot write the output")};
        }
    }

    bool isWhole()
    {
        output.isOver = true;
        shadow.isOver = true;
        outputStream << QByteArray(probeSize, '\0');
        shadowStream << QByteArray(probeSize, '\xFF');
        return !output.hasSurplus && !shadow.hasSurplus && takeLoggedFailure().isEmpty();
    }

private:
    Gate output;
    Gate shadow{nullptr};
    Inflate outputStream{output};
    Inflate shadowStream{shadow};
};

/** @return an empty text, or what is wrong with the data */
QString decompress(QFile& input, const QString& inputName, QIODevice& output)
{
    Decompressor decompressor(output);
    for (;;) {
        const QByteArray data = input.read(blockSize);
        if (data.isEmpty()) {
            break;
        }
        decompressor.add(data);
        const QString failure = takeLoggedFailure();
        if (!failure.isEmpty()) {
            return QStringLiteral("corrupt data: %1").arg(failure);
        }
    }
    if (input.error() != QFileDevice::NoError) {
        throw Failure{QStringLiteral("%1: %2").arg(inputName, input.errorString())};
    }
    return decompressor.isWhole() ? QString()
                                  : QStringLiteral("the compressed data ends too early");
}

std::unique_ptr<QFileDevice> openOutput(const CommandLine& commandLine)
{
    const QString fileName = commandLine.value("o");
    const QFileInfo info(fileName);
    if (commandLine.isSet("o") && fileName.isEmpty()) {
        throw Failure{QStringLiteral("the name of a file is empty")};
    }
    if (!commandLine.isSet("o")) {
        auto file = std::make_unique<QFile>();
        if (!file->open(STDOUT_FILENO, QIODevice::WriteOnly | QIODevice::Unbuffered)) {
            throw Failure{QStringLiteral("cannot write to standard output")};
        }
        return file;
    }
    if (info.exists() && !commandLine.isSet("force")) {
        throw Failure{QStringLiteral("%1 exists; --force overwrites it").arg(fileName)};
    }
    // A file appears whole or not at all, but a device must stay one.
    std::unique_ptr<QFileDevice> file;
    if (info.exists() && !info.isFile()) {
        file = std::make_unique<QFile>(fileName);
    } else {
        file = std::make_unique<QSaveFile>(fileName);
    }
    if (!file->open(QIODevice::WriteOnly)) {
        throw Failure{QStringLiteral("%1: %2").arg(fileName, file->errorString())};
    }
    return file;
}

} // namespace

int runInflate(const QStringList& arguments)
{
    CommandLine commandLine("inflate",
        "Decompresses a zlib or gzip stream to standard output or into a file.\n"
        "What follows the end of the stream is ignored.");
    commandLine.addOption("o", "The file to write; it appears only if the data is whole.", "FILE");
    commandLine.addOption("force", "Overwrites the file if it exists.");
    commandLine.addArgument("file", "The compressed file; - or none for standard input.", "[FILE]");
    commandLine.addExample("-o voice.dat voice.dat.gz");
    commandLine.addExample("voice.dat.gz | head");
    commandLine.process(arguments, 1);

    QString inputName = commandLine.fileName();
    QFile input;
    openInput(input, inputName);
    const auto output = openOutput(commandLine);
    const QString reason = decompress(input, inputName, *output);
    if (!reason.isEmpty()) {
        printError(QStringLiteral("%1: %2").arg(inputName, reason));
        return 1; // what a QSaveFile holds goes with it
    }
    auto* const file = qobject_cast<QSaveFile*>(output.get());
    if (file != nullptr ? !file->commit() : !output->flush()) {
        throw Failure{QStringLiteral("cannot write the output: %1").arg(output->errorString())};
    }
    return 0;
}
