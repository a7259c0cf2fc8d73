// The fuzz targets: the library agrees with the reference implementations on any text.

#include <reference/comparisons.h>

namespace {

// Log lines are not findings, and printing them would slow the search.
const QtMessageHandler usualHandler =
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});

[[maybe_unused]] bool prompts(const QString& text, quint8 variant) {
    const PromptContext context = variant % 3 == 0 ? GeneralContext : variant % 3 == 1 ? BrandSoundContext : A4AContext;
    const bool readsAnyFile = context == A4AContext && text.contains(u("<file "));
    return readsAnyFile || reference::hasSamePrompt(text, context, {});
}

[[maybe_unused]] bool sentences(const QString& text, quint8 variant) {
    const Language languages[] = {German, Arabic, MandarinChina, Korean, Japanese, InvalidLanguage};
    return reference::hasSameSentences(text, languages[variant % std::size(languages)]);
}

[[maybe_unused]] bool tables(const QString& text, quint8 variant) {
    EcoFile whole;
    for (const QString& line : text.split(QLatin1Char('\n'))) {
        if (!reference::hasSameFields(line, variant)) { return false; }
        whole.parseHeaderLine(line); // any line, also one that declares nothing
        whole.parseDataLine(line);
    }
    return true;
}

} // namespace

// The first byte chooses a variant, the others are the text.
extern "C" int LLVMFuzzerTestOneInput(const quint8* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), QByteArray::size_type(size));
    if (!FUZZ_TARGET(QString::fromUtf8(bytes.mid(1)), size > 0 ? data[0] : 0)) { std::abort(); }
    return 0;
}
