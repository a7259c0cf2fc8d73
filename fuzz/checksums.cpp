#include "fuzz.h"

#include <core/speech/speechchecksummanager.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QVariantMap>

namespace {

using Manager = SpeechChecksumManager;

void checkKey(const QString& path, Language language, Manager::ChecksumType type) {
    const Manager::ChecksumKey key(Manager::ChecksumKey(path, language, type).toString());
    const bool hasCode = !convertLanguageIdToIso(language).isEmpty();
    require(key.filePath == path && key.language == (hasCode ? language : InvalidLanguage) && key.type == type,
        "a key survives toString() and back");
}

/** Loaded entries survive writing and reloading, except for paths that a key or the file cannot represent. */
void checkStore(const QByteArray& content) {
    static const QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("store.json"));
    qputenv("ORV_SPEECH_CHECKSUM_FILE", fileName.toLocal8Bit());
    QFile file(fileName);
    require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(), "there is room for a store");
    file.close();
    Manager loaded;
    loaded.writePersistentData();
    const Manager reloaded;
    for (const QJsonValue& value : QJsonDocument::fromJson(content).array()) {
        const QVariantMap element = value.toObject().toVariantMap();
        const QString path = element[QStringLiteral("filePath")].toString();
        const auto language = Language(element[QStringLiteral("language")].toInt());
        const auto type = Manager::ChecksumType(element[QStringLiteral("type")].toInt());
        const bool isKept =
            !path.isEmpty() && !path.contains(QLatin1Char(';')) && path == QString::fromUtf8(path.toUtf8());
        require(!isKept || reloaded.checksum(path, language, type) == loaded.checksum(path, language, type),
            "what was loaded is written");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, std::size_t size) {
    const FuzzInput input(data, size);
    checkStore(input.bytes);
    const QString path = input.text().remove(QLatin1Char(';'));
    checkKey(path, Language(input.variant % (Thai + 1)), Manager::ChecksumType(int(input.variant) - 128));
    return 0;
}
