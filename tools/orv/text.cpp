#include "text.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>

QString onOneLine(QString text)
{
    constexpr ushort symbols = 0x2400; // U+2400 is the symbol for U+0000, and so on
    const auto isControl = [](QChar character) { return character < u' '; };
    if (std::any_of(text.cbegin(), text.cend(), isControl)) { // the loop copies the text
        for (QChar& character : text) {
            character = isControl(character) ? QChar(symbols + character.unicode()) : character;
        }
    }
    return text;
}

QString counted(qint64 count, const char* thing)
{
    return u"%1 %2%3"_s.arg(
        QString::number(count), QLatin1String(thing), QLatin1String(count == 1 ? "" : "s"));
}

QVector<int> editDistances(const QString& a, const QString& b)
{
    QVector<int> row(b.size() + 1); // the distances of the first i characters of a, in each round
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

QString nearest(const QString& word, const QStringList& candidates, int limit)
{
    QString result;
    const QString lowerCase = word.toLower();
    for (const QString& candidate : candidates) {
        if (std::abs(word.size() - candidate.size()) >= limit) {
            continue;
        }
        const int distance = editDistances(lowerCase, candidate.toLower()).constLast();
        if (distance < limit) {
            result = candidate;
            limit = distance;
        }
    }
    return result;
}

QString unknown(const char* what, const QString& word, const QStringList& candidates)
{
    const QString text = u"unknown %1: \"%2\""_s.arg(QLatin1String(what), word);
    const QString guess = nearest(word, candidates, int(word.size() + 1) / 2);
    return guess.isEmpty() ? text : text + u", did you mean \"%1\"?"_s.arg(guess);
}
