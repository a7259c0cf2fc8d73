#include "comparison.h"
#include "samples.h"

#include <core/speech/speechchecksummanager.h>

#include <QCryptographicHash>
#include <QFile>

namespace {

QByteArray hashByHand(const QString& fileName)
{
    QCryptographicHash hash(QCryptographicHash::Md5);
    QFile file(fileName);
    file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    QByteArray block(64 * 1024, Qt::Uninitialized);
    for (qint64 length = 0; (length = file.read(block.data(), block.size())) > 0;) {
        hash.addData(block.constData(), int(length));
    }
    return hash.result().toHex();
}

} // namespace

void addChecksums()
{
    const struct {
        const char* name;
        int size;
        double target;
    } rows[] = {{"256 MB", 256 * 1024 * 1024, 1.02}, {"4 kB", 4096, 1.05}};
    for (const auto& row : rows) {
        const QString fileName = temporaryPath(QString::fromLatin1(row.name));
        writeFile(fileName, QByteArray(row.size, 'x'));
        addComparison({"generateChecksum", row.name, row.target,
            timed([fileName] { SpeechChecksumManager::generateChecksum(fileName); }),
            {{"QCryptographicHash", timed([fileName] { hashByHand(fileName); })}}});
    }
}
