#include "commands/commands.h"

#include <core/inflate.h>

#include <QSaveFile>

#include <memory>

#include <unistd.h>

namespace {

constexpr int blockSize = 64 * 1024;

/** Passes data on, and remembers write errors, which Inflate ignores. */
class Output : public QIODevice
{
public:
    explicit Output(QIODevice& target)
        : target(target)
    {
        open(WriteOnly | Unbuffered);
    }

    bool hasFailed = false;

protected:
    qint64 readData(char*, qint64) override
    {
        return -1;
    }

    qint64 writeData(const char* data, qint64 size) override
    {
        hasFailed |= target.write(data, size) != size;
        return size;
    }

private:
    QIODevice& target;
};

/** @return what is wrong with the data; empty if nothing @throw Failure */
QString decompress(Input& input, QIODevice& target)
{
    Output output(target);
    Inflate inflate(output);
    Progress progress(input.size());
    QByteArray data;
    do { // a short block is the last one; a further read would wait for a second Ctrl-D on a terminal
        data = input.read(blockSize);
        inflate << data;
        progress.advance(data.size());
        failIf(output.hasFailed, u"cannot write the output"_s);
    } while (data.size() == blockSize && !inflate.hasFailed());
    failIf(input.error() != QFileDevice::NoError, u"%1: %2"_s.arg(input.name, input.errorString()));
    const QString surplus = u"left %1 behind the end of the compressed data"_s.arg(
        counted(qint64(inflate.surplusSize()), "byte"));
    return inflate.hasFailed()         ? u"the compressed data is corrupt"_s
           : !inflate.isFinished()     ? u"the compressed data ends too early"_s
           : inflate.surplusSize() > 0 ? surplus
                                       : QString();
}

std::unique_ptr<QFileDevice> openOutput(const CommandLine& commandLine)
{
    const QString fileName = commandLine.value(u"o"_s);
    const QFileInfo info(fileName);
    if (!commandLine.isSet(u"o"_s)) {
        auto file = std::make_unique<QFile>();
        failIf(!file->open(STDOUT_FILENO, QIODevice::WriteOnly | QIODevice::Unbuffered),
            u"cannot write to standard output"_s);
        return file;
    }
    failIf(fileName.isEmpty(), u"the name of a file is empty"_s);
    failIf(info.exists() && !commandLine.isSet(u"force"_s),
        u"%1 exists; --force overwrites it"_s.arg(fileName));
    // A file is replaced when it is complete; a device is written directly.
    const bool isDevice = info.exists() && !info.isFile();
    std::unique_ptr<QFileDevice> file(
        isDevice ? static_cast<QFileDevice*>(new QFile(fileName)) : new QSaveFile(fileName));
    const bool isOpen = file->open(QIODevice::WriteOnly);
    failIf(!isOpen, u"%1: %2"_s.arg(fileName, file->errorString()));
    return file;
}

void run(const CommandLine& commandLine)
{
    Input input(commandLine.fileName());
    const auto output = openOutput(commandLine);
    const QString reason = decompress(input, *output);
    auto* const file = qobject_cast<QSaveFile*>(output.get());
    if (!reason.isEmpty()) { // an uncommitted QSaveFile leaves no file
        printError(u"%1: %2"_s.arg(input.name, reason), 1);
    } else if (file != nullptr ? !file->commit() : !output->flush()) {
        throw Failure{u"cannot write the output: %1"_s.arg(output->errorString())};
    }
}

} // namespace

const Command inflateCommand = {"inflate", "decompresses zlib and gzip streams",
    u"Decompresses a zlib or gzip stream to standard output or into a file. If other\n"
    "bytes follow the stream, such as a second stream, they are ignored, their number\n"
    "is reported, and the exit code is 1."_s,
    {inputArgument},
    {{"o", "The file to write. It appears only if the stream is complete and nothing follows it.",
         "FILE"},
        {"force", "Overwrites the file if it exists."}},
    {u"-o voice.dat voice.dat.gz"_s, u"voice.dat.gz | head"_s}, run, 1};
