#include "fuzz.h"

#include <reference/prompts.h>
#include <support/described.h>

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, std::size_t size) {
    const FuzzInput input(data, size);
    const auto context = input.chosenOf({GeneralContext, BrandSoundContext, A4AContext});
    if (context == A4AContext && input.text.contains(u("<file "))) { return 0; } // would read any file
    const QString expected = described(reference::prompt(input.text, context, {}));
    require(described(PromptData::parse(input.text, context)) == expected);
    return 0;
}
