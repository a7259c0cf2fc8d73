#include "fuzz.h"

#include <support/plainways.h>

#include <core/parsers/sentencetokenizer.h>

namespace {

/** Without blanks and inline tags, which splitting drops, makes and moves. */
QString bare(QString text)
{
    const auto isBlank = [](QChar c) { return c.isSpace(); };
    text.resize(int(std::remove_if(text.begin(), text.end(), isBlank) - text.begin()));
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, std::size_t size)
{
    const FuzzInput input(data, size);
    const auto language = input.chosenOf({German, Arabic, MandarinChina, Korean, Japanese, InvalidLanguage});
    const QString text = input.text();
    const QStringList sentences = SentenceTokenizer::split(text, language);
    require(sentences == splitPlainly(text, language), "texts are split as the rules say, one after the other");
    if (!text.contains(QLatin1Char('\\'))) {
        require(bare(sentences.join(QString())) == bare(text), "splitting loses and invents nothing but blanks");
    }
    return 0;
}
