#include "samples.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <random>

QList<Language> sampleLanguages() { return {German, EnglishUk, Russian, Arabic, Korean, MandarinChina, Japanese}; }

QString sampleText(Language language, int length, bool isTagged, quint32 seed) {
    QFile file(QStringLiteral(SAMPLE_DATA "/%1.txt").arg(QString::fromLatin1(convertLanguageIdToIso(language))));
    if (!file.open(QIODevice::ReadOnly)) { qFatal("no sample: %s", qPrintable(file.fileName())); }
    const bool hasBlanks = language != MandarinChina && language != Japanese;
    const QString joiner = hasBlanks ? QStringLiteral(" ") : QString();
    const auto endsSentence = [](const QString& word) { return QString::fromUtf8(".!?。？！؟").contains(word.back()); };
    QStringList words[2]; // those that begin a sentence, those within one
    int sentenceCount = 0;
    bool isWithin = false;
    for (const QString& word : QString::fromUtf8(file.readAll()).simplified().split(joiner, Qt::SkipEmptyParts)) {
        words[isWithin].append(word);
        isWithin = !endsSentence(word);
        sentenceCount += isWithin ? 0 : 1;
    }
    const int wordCount = int(words[0].size() + words[1].size());
    // The output of the engine is the same with every C++ library; that of the distributions is not.
    std::mt19937 random(seed);
    const auto drawn = [&random](int count) { return int(random() % quint32(count)); };
    QString text;
    while (text.size() < length) {
        if (isTagged && drawn(2 * wordCount) < sentenceCount) {
            text += QStringLiteral("\\!\\vol=%1\\ ").arg(50 + drawn(50));
        }
        if (isTagged && drawn(9 * wordCount) < sentenceCount) { text += QStringLiteral("\\!\\rst\\ "); }
        const QString& word = words[isWithin][drawn(int(words[isWithin].size()))];
        isWithin = !endsSentence(word);
        text += word + joiner;
    }
    text.truncate(length);
    return text;
}

QString temporaryPath(const QString& name) {
    // In memory if possible: disks are not compared.
    static const QTemporaryDir folder(
        QFileInfo(QStringLiteral("/dev/shm")).isWritable() ? QStringLiteral("/dev/shm/orvbench") : QString());
    return folder.filePath(name);
}

void writeFile(const QString& fileName, const QByteArray& content) {
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qFatal("cannot write %s", qPrintable(fileName));
    }
}
