#include "fuzz.h"

#include <core/speech/speechchecksummanager.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QTemporaryDir>

namespace {

using Manager = SpeechChecksumManager;

/** The elements of a store in an order of their own, since that of the table means nothing. */
QStringList elementsOf(const QString& fileName)
{
    QFile file(fileName);
    QStringList elements;
    if (file.open(QIODevice::ReadOnly)) {
        for (const QJsonValue& value : QJsonDocument::fromJson(file.readAll()).array()) {
            elements += QString::fromUtf8(QJsonDocument(value.toObject()).toJson());
        }
    }
    elements.sort();
    return elements;
}

void checkKey(const QString& path, Language language, Manager::ChecksumType type)
{
    const Manager::ChecksumKey key(Manager::ChecksumKey(path, language, type).toString());
    const bool hasCode = !convertLanguageIdToIso(language).isEmpty();
    require(key.filePath == path && key.language == (hasCode ? language : InvalidLanguage) && key.type == type,
        "a key survives both ways");
}

/** What is written of whatever was loaded is loaded and written again as it is. */
void checkStore(const QByteArray& content)
{
    static const QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("store.json"));
    qputenv("ORV_SPEECH_CHECKSUM_FILE", fileName.toLocal8Bit());
    QFile file(fileName);
    require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(), "there is room for a store");
    file.close();
    // A path with the separator of keys becomes another, and those that became the same one.
    for (int round = 0; round < 2; ++round) { Manager().writePersistentData(); }
    const QStringList first = elementsOf(fileName);
    Manager().writePersistentData();
    require(elementsOf(fileName) == first, "a store that was written comes back as it is");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, std::size_t size)
{
    const FuzzInput input(data, size);
    checkStore(input.bytes);
    const QString path = input.text().remove(QLatin1Char(';'));
    checkKey(path, Language(input.variant % (Thai + 1)), Manager::ChecksumType(int(input.variant) - 128));
    return 0;
}
