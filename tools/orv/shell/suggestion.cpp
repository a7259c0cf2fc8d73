#include "shell/suggestion.h"

#include <core/speech/language.h>

#include <algorithm>
#include <numeric>

QVector<int> editDistances(const QString& a, const QString& b)
{
    QVector<int> row(b.size() + 1); // for a growing start of a
    std::iota(row.begin(), row.end(), 0);
    for (int i = 0; i < a.size(); ++i) {
        int diagonal = row[0];
        row[0] = i + 1;
        for (int j = 0; j < b.size(); ++j) {
            const int replaced = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row;
}

int editDistance(const QString& a, const QString& b)
{
    const QVector<int> distances = editDistances(a, b);
    return distances.last();
}

QString unknown(const char* what, const QString& word, const QStringList& candidates)
{
    QString nearest;
    int least = (word.size() + 1) / 2; // from there on it is another word
    for (const QString& candidate : candidates) {
        const int distance = editDistance(word.toLower(), candidate.toLower());
        if (distance < least) {
            nearest = candidate;
            least = distance;
        }
    }
    const QString text = QStringLiteral("unknown %1: \"%2\"").arg(QLatin1String(what), word);
    return nearest.isEmpty() ? text : text + QStringLiteral(", did you mean \"%1\"?").arg(nearest);
}

QString unknownLanguage(const QString& code)
{
    QStringList codes;
    for (int value = 0; value <= Thai; ++value) {
        const QByteArray iso = convertLanguageIdToIso(Language(value));
        if (!iso.isEmpty()) {
            codes += QString::fromLatin1(iso);
        }
    }
    return unknown("language", code, codes);
}
