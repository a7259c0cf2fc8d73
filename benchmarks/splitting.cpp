#include "comparison.h"
#include "samples.h"

#include <core/parsers/sentencetokenizer.h>

#include <QTextBoundaryFinder>

#include <unicode/brkiter.h>

namespace {

QStringList splitByIcu(icu::BreakIterator& iterator, const QString& text)
{
    const icu::UnicodeString view(false, reinterpret_cast<const char16_t*>(text.utf16()), text.size());
    iterator.setText(view);
    QStringList sentences;
    int begin = iterator.first();
    for (int end = iterator.next(); end != icu::BreakIterator::DONE; begin = end, end = iterator.next()) {
        sentences.append(text.mid(begin, end - begin));
    }
    return sentences;
}

QStringList splitByQt(const QString& text)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Sentence, text);
    QStringList sentences;
    int begin = 0;
    for (int end = finder.toNextBoundary(); end >= 0; begin = end, end = finder.toNextBoundary()) {
        sentences.append(text.mid(begin, end - begin));
    }
    return sentences;
}

void add(Language language, int kilobytes, bool isTagged)
{
    const QString text = sampleText(language, kilobytes * 512, isTagged);
    const QByteArray iso = convertLanguageIdToIso(language);
    UErrorCode status = U_ZERO_ERROR;
    const std::shared_ptr<icu::BreakIterator> iterator(
        icu::BreakIterator::createSentenceInstance(icu::Locale(iso.constData()), status));
    Comparison& added = addComparison({isTagged ? "split tagged" : "split plain", std::to_string(kilobytes) + " kB",
        isTagged ? 0.75 : 1.1, timed([text, language] { SentenceTokenizer::split(text, language); }),
        {{"ICU", timed([iterator, text] { splitByIcu(*iterator, text); })},
            {"QTextBoundaryFinder", timed([text] { splitByQt(text); })}},
        SentenceTokenizer::split(text, language).size() + 8});
    added.series = iso.toStdString();
    added.work = text.size();
}

} // namespace

void addSplitting()
{
    for (const bool isTagged : {false, true}) {
        for (const Language language : sampleLanguages()) {
            for (const int kilobytes : {1, 40, 1024, 16 * 1024}) { add(language, kilobytes, isTagged); }
        }
    }
}
