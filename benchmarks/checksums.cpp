#include "comparison.h"
#include "samples.h"

#include <core/speech/speechchecksummanager.h>

#include <QCryptographicHash>
#include <QFile>

#include <memory>

#include <openssl/evp.h>

namespace {

template <typename Function> void readBlocks(const QString& fileName, Function add) {
    QFile file(fileName);
    file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    QByteArray block(64 * 1024, Qt::Uninitialized);
    for (qint64 length = 0; (length = file.read(block.data(), block.size())) > 0;) {
        add(QByteArray::fromRawData(block.constData(), QByteArray::size_type(length)));
    }
}

QByteArray hashByHand(const QString& fileName) {
    QCryptographicHash hash(QCryptographicHash::Md5);
    readBlocks(fileName, [&hash](const QByteArray& block) { hash.addData(block); });
    return hash.result().toHex();
}

/** The same with OpenSSL, whose MD5 is faster. */
QByteArray hashByOpenSsl(const QString& fileName) {
    const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(), EVP_MD_CTX_free);
    EVP_DigestInit_ex(context.get(), EVP_md5(), nullptr);
    readBlocks(fileName, [&context](const QByteArray& block) {
        EVP_DigestUpdate(context.get(), block.constData(), std::size_t(block.size()));
    });
    QByteArray digest(16, Qt::Uninitialized);
    EVP_DigestFinal_ex(context.get(), reinterpret_cast<unsigned char*>(digest.data()), nullptr);
    return digest.toHex();
}

} // namespace

void addChecksums() {
    const struct {
        const char* name;
        int size;
        double target;
    } rows[] = {{"256 MB", 256 * 1024 * 1024, 1.02}, {"4 kB", 4096, 1.05}};
    for (const auto& row : rows) {
        const QString fileName = temporaryPath(QString::fromLatin1(row.name));
        writeFile(fileName, QByteArray(row.size, 'x'));
        addComparison({"generateChecksum", row.name, [fileName] { SpeechChecksumManager::generateChecksum(fileName); },
            {{"QCryptographicHash", [fileName] { hashByHand(fileName); }, row.target},
                {"OpenSSL", [fileName] { hashByOpenSsl(fileName); }}}});
    }
}
