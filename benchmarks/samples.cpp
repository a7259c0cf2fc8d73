#include "samples.h"

#include <core/parsers/sentencetokenizer.h>

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

QList<Language> sampleLanguages() { return {German, EnglishUk, Russian, Arabic, Korean, MandarinChina, Japanese}; }

QString sampleText(Language language, int length, bool isTagged)
{
    QFile file(QStringLiteral(SAMPLE_DATA "/%1.txt").arg(QString::fromLatin1(convertLanguageIdToIso(language))));
    if (!file.open(QIODevice::ReadOnly)) { qFatal("no sample: %s", qPrintable(file.fileName())); }
    const QStringList sentences = SentenceTokenizer::split(QString::fromUtf8(file.readAll()), language);
    const QString joiner = language == MandarinChina || language == Japanese ? QString() : QStringLiteral(" ");
    QString text;
    for (int i = 0; text.size() < length; ++i) {
        if (isTagged && i % 2 == 0) { text += QStringLiteral("\\!\\vol=%1\\ ").arg(50 + i % 50); }
        // Another order in each round, and a number here and there.
        text += sentences[(i * 7 + i / sentences.size()) % sentences.size()] + joiner;
        if (isTagged && i % 9 == 8) { text += QStringLiteral("\\!\\rst\\ "); }
    }
    text.truncate(length);
    return text;
}

QString temporaryPath(const QString& name)
{
    // In memory where that can be, since disks are not what is compared.
    static const QTemporaryDir folder(
        QFileInfo(QStringLiteral("/dev/shm")).isWritable() ? QStringLiteral("/dev/shm/orvbench") : QString());
    return folder.filePath(name);
}

void writeFile(const QString& fileName, const QByteArray& content)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qFatal("cannot write %s", qPrintable(fileName));
    }
}
