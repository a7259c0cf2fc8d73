#include "comparison.h"
#include "samples.h"

#include <core/speech/speechchecksummanager.h>

#include <QFile>
#include <QJsonDocument>

void addStore() {
    using Manager = SpeechChecksumManager;
    const QString fileName = temporaryPath(QStringLiteral("store.json"));
    qputenv("ORV_SPEECH_CHECKSUM_FILE", fileName.toUtf8());
    const auto manager = std::make_shared<Manager>();
    QHash<QString, QByteArray> table;
    for (int i = 0; i < 50'000; ++i) {
        const QString path = QStringLiteral("/opt/speech/data/de_DE/prompts/%1.dat").arg(i);
        const QByteArray checksum = QByteArray::number(i).rightJustified(32, '0');
        manager->insert(path, German, checksum, Manager::DefaultChecksum);
        table.insert(Manager::ChecksumKey(path, German, Manager::DefaultChecksum).toString(), checksum);
    }
    manager->writePersistentData();
    const auto readDocument = [fileName] {
        QFile file(fileName);
        file.open(QIODevice::ReadOnly);
        return QJsonDocument::fromJson(file.readAll());
    };
    addComparison({"store: reload", "50,000 entries", [] { Manager(); },
        {{"QJsonDocument", [readDocument] { readDocument(); }, 1.7}}});
    const QJsonDocument document = readDocument();
    const QString copyName = temporaryPath(QStringLiteral("copy.json"));
    addComparison({"store: write", "50,000 entries", [manager] { manager->writePersistentData(); },
        {{"QJsonDocument", [document, copyName] { writeFile(copyName, document.toJson()); }, 1.6}}});
    // Several paths take turns: the seed of the hash determines how many entries a look-up passes.
    constexpr int turns = 64;
    QStringList paths;
    QStringList keys;
    for (int i = 0; i < turns; ++i) {
        paths.append(QStringLiteral("/opt/speech/data/de_DE/prompts/%1.dat").arg(i * 777));
        keys.append(Manager::ChecksumKey(paths.back(), German, Manager::DefaultChecksum).toString());
    }
    addComparison({"store: checksum", "hit",
        [manager, paths, i = 0]() mutable {
            manager->checksum(paths.at(i++ % turns), German, Manager::DefaultChecksum);
        },
        {{"QHash", [table, keys, i = 0]() mutable { return table.value(keys.at(i++ % turns)); }, 2.6}}, 1});
}
