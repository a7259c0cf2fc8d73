#include "fuzz.h"

#include <reference/sentences.h>

#include <core/parsers/sentencetokenizer.h>

namespace {

/** The text without blanks, which splitting drops and adds. */
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
    require(sentences == reference::sentences(text, language), "texts are split as by the rules one after the other");
    if (!text.contains(QLatin1Char('\\'))) {
        require(bare(sentences.join(QString())) == bare(text), "splitting removes and adds only blanks");
    }
    return 0;
}
