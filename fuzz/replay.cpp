// Passes each file of the folders in the arguments to a fuzz target, as the fuzzer does.

#include <QDir>

#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, std::size_t size);

int main(int argc, char** argv) {
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        const QDir folder(QString::fromLocal8Bit(argv[i]));
        for (const QString& name : folder.entryList(QDir::Files)) {
            QFile file(folder.filePath(name));
            if (!file.open(QIODevice::ReadOnly)) { return 1; }
            const QByteArray data = file.readAll();
            LLVMFuzzerTestOneInput(reinterpret_cast<const quint8*>(data.constData()), std::size_t(data.size()));
            ++count;
        }
    }
    std::printf("%d inputs replayed\n", count);
    return count > 0 ? 0 : 1;
}
