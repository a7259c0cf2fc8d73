#include "comparison.h"
#include "samples.h"

#include <core/parsers/sentencetokenizer.h>

#include <QTextBoundaryFinder>

#include <benchmark/benchmark.h>
#include <unicode/brkiter.h>

#include <algorithm>

namespace {

struct Piece {
    int begin;
    int length;
};
/** Pieces of a text that are as long as its sentences, spread evenly over it. */
using Pieces = std::vector<Piece>;

Pieces piecesOf(const QString& text, const QStringList& sentences) {
    Pieces pieces;
    for (const QString& sentence : sentences) {
        const qint64 range = text.size() - sentence.size();
        pieces.push_back({int(range * qint64(pieces.size()) / sentences.size()), int(sentence.size())});
    }
    return pieces;
}

/**
 * The least work of any splitter: one pass over the text that finds the marks at the ends of
 * sentences, and the list of strings. It applies no rules, repeats no tags and knows the pieces.
 */
QStringList floorOf(const QString& text, QChar fullStop, const Pieces& pieces) {
    const auto isMark = [fullStop](QChar character) {
        return character == fullStop || character == QLatin1Char('!') || character == QLatin1Char('?');
    };
    int marks = 0;
    for (auto at = text.cbegin(); (at = std::find_if(at, text.cend(), isMark)) != text.cend(); ++at) { ++marks; }
    benchmark::DoNotOptimize(marks);
    QStringList sentences;
    sentences.reserve(int(pieces.size()));
    for (const Piece& piece : pieces) { sentences.append(text.mid(piece.begin, piece.length)); }
    return sentences;
}

QStringList splitByIcu(icu::BreakIterator& iterator, const QString& text) {
    const icu::UnicodeString view(false, reinterpret_cast<const char16_t*>(text.utf16()), int32_t(text.size()));
    iterator.setText(view);
    QStringList sentences;
    int begin = iterator.first();
    for (int end = iterator.next(); end != icu::BreakIterator::DONE; begin = end, end = iterator.next()) {
        sentences.append(text.mid(begin, end - begin));
    }
    return sentences;
}

QStringList splitByQt(const QString& text) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Sentence, text);
    QStringList sentences;
    auto begin = finder.position();
    for (auto end = finder.toNextBoundary(); end >= 0; begin = end, end = finder.toNextBoundary()) {
        sentences.append(text.mid(begin, end - begin));
    }
    return sentences;
}

/** Runs a function with several texts in turn, so that the processor does not learn a short one. */
template <typename Function> auto withNextOf(const QStringList& texts, Function function) {
    return [texts, function, next = 0]() mutable {
        function(next);
        next = (next + 1) % int(texts.size());
    };
}

void add(Language language, int kilobytes, bool isTagged) {
    const int length = kilobytes * 512;
    QStringList texts;
    std::vector<Pieces> pieces;
    std::size_t mostSentences = 0;
    for (quint32 seed = 1; texts.isEmpty() || texts.size() * length < unlearnable; ++seed) {
        texts.append(sampleText(language, length, isTagged, seed));
        pieces.push_back(piecesOf(texts.back(), SentenceTokenizer::split(texts.back(), language)));
        mostSentences = std::max(mostSentences, pieces.back().size());
    }
    const char16_t fullStop = language == MandarinChina || language == Japanese ? u'\u3002' : u'.';
    const QByteArray iso = convertLanguageIdToIso(language);
    UErrorCode status = U_ZERO_ERROR;
    const std::shared_ptr<icu::BreakIterator> icuIterator(
        icu::BreakIterator::createSentenceInstance(icu::Locale(iso.constData()), status));
    addComparison({isTagged ? "split tagged" : "split plain", std::to_string(kilobytes) + " kB",
        withNextOf(texts, [texts, language](int i) { SentenceTokenizer::split(texts[i], language); }),
        {{"floor",
             withNextOf(
                 texts, [texts, fullStop, pieces](int i) { floorOf(texts[i], fullStop, pieces[std::size_t(i)]); }),
             isTagged ? 2.2 : 1.4, isTagged ? 1.5 : 1.0},
            {"ICU", withNextOf(texts, [texts, icuIterator](int i) { splitByIcu(*icuIterator, texts[i]); }), 0.55,
                isTagged ? 0.40 : 0.35},
            {"QTextBoundaryFinder", withNextOf(texts, [texts](int i) { splitByQt(texts[i]); })}},
        double(mostSentences) + 8, iso.toStdString(), double(length)});
}

} // namespace

void addSplitting() {
    for (const bool isTagged : {false, true}) {
        for (const Language language : sampleLanguages()) {
            for (const int kilobytes : {1, 64, 1024, 16 * 1024}) { add(language, kilobytes, isTagged); }
        }
    }
}
