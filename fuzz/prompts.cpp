#include "fuzz.h"

#include <reference/prompts.h>

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, std::size_t size) {
    const FuzzInput input(data, size);
    const auto context = input.chosenOf({GeneralContext, BrandSoundContext, A4AContext});
    const QString markup = input.text();
    if (context == A4AContext && markup.contains(QLatin1String("<file "))) { return 0; } // would read any file
    const QString expected = described(reference::prompt(markup, context, {}));
    require(described(PromptData::parse(markup, context)) == expected, "prompts are parsed as by the patterns");
    return 0;
}
