#include "fuzz.h"

#include <reference/sentences.h>

#include <core/parsers/sentencetokenizer.h>

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, std::size_t size) {
    const FuzzInput input(data, size);
    const auto language = input.chosenOf({German, Arabic, MandarinChina, Korean, Japanese, InvalidLanguage});
    require(SentenceTokenizer::split(input.text, language) == reference::sentences(input.text, language));
    return 0;
}
