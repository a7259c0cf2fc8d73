#include <core/speech/speechcommon.h>

#include <core/log_p.h>
#include <core/parsers/jsonfile.h>
#include <core/speech/speechcommon_p.h>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>

static_assert(sizeof(PromptMode) == 4 && sizeof(PromptContext) == 4, "sizes are interface");

namespace {

// Paths by sound id, filled by loadBrandSounds().
QHash<QString, QString> brandSounds;

constexpr bool standByRule()
{
    for (const PromptForm* form = promptForms + 1; form != std::end(promptForms); ++form) {
        if (form[-1].rule > form->rule) {
            return false;
        }
    }
    return true;
}
static_assert(standByRule(), "forms are in the order of their rules");

/** The first form of @p rule. */
constexpr const PromptForm* formsOf(PromptRule rule)
{
    const PromptForm* form = promptForms;
    while (form->rule != rule) {
        ++form;
    }
    return form;
}
constexpr const PromptForm* offboardFileForms = formsOf(OffboardFileRule);
constexpr const PromptForm* audioForms = formsOf(AudioRule);
constexpr const PromptForm* brandSoundForms = formsOf(BrandSoundRule);
constexpr const PromptForm* markupForms = formsOf(MarkupRule);

/**
 * Sets @p prompt, whose text is the input, by the first form of [@p form, @p end) that matches.
 *
 * @return false if none matches; the text may then be the id of an unknown brand sound
 */
bool parseForms(const PromptForm* form, const PromptForm* end, const QString& input,
    const BracketPositions& brackets, PromptData& prompt)
{
    for (; form != end; ++form) {
        const auto match = form->pattern.match(input, brackets);
        if (form->rule == BrandSoundRule) {
            if (match) {
                prompt.text = match->capture(form->text).toString();
            }
            const auto sound = brandSounds.constFind(prompt.text);
            if (sound != brandSounds.constEnd()) {
                prompt = PromptData(*sound, form->mode);
                return true;
            }
        } else if (match) {
            prompt = PromptData(match->capture(form->text).toString(), form->mode);
            if (form->language != 0) {
                prompt.language = convertIsoToLanguageId(match->capture(form->language).toUtf8());
            }
            if (form->genre != 0) {
                prompt.genre = match->capture(form->genre).toString();
            }
            return true;
        }
    }
    return false;
}

/** Sets @p prompt by the off-board markup in a file; false if it has none or cannot be opened. */
bool a4AParse(const QString& fileName, PromptData& prompt)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        ORV_LOG(warning, "bool<unnamed>::a4AParse(const QString&, PromptData&)")
            << "Failed to open" << fileName;
        return false;
    }
    const QByteArray bytes = file.readAll();
    const QString content = QString::fromUtf8(bytes.constData()); // up to the first NUL
    return parseForms(promptForms, offboardFileForms, content, findBrackets(content), prompt);
}

/** Whether @p text has a place marker; without one QString::arg() logs a warning. */
bool holdsPlaceMarker(const QString& text)
{
    const QChar* const end = text.constEnd();
    for (const QChar* c = text.constBegin(); c != end; ++c) {
        if (*c == QLatin1Char('%')) {
            const QChar* digit = c + 1;
            if (digit != end && *digit == QLatin1Char('L')) {
                ++digit;
            }
            if (digit != end && digit->digitValue() >= 0) {
                return true;
            }
        }
    }
    return false;
}

QString brandSoundsFileName()
{
    return QCoreApplication::applicationDirPath() + QLatin1String("/../share/tts/common.json");
}

void registerMetaTypes()
{
    qRegisterMetaType<PromptData>();
}
Q_CONSTRUCTOR_FUNCTION(registerMetaTypes)

} // namespace

PromptData::PromptData(const QString& text, PromptMode mode)
    : text(text)
    , mode(mode)
{}

PromptData PromptData::parse(const QString& input, PromptContext context)
{
    const BracketPositions brackets = findBrackets(input);
    if (brackets.isEmpty() && context != BrandSoundContext) {
        return PromptData(input, PromptText); // every form starts with a bracket
    }
    PromptData prompt(input, PromptText);
    if (context == BrandSoundContext) {
        parseForms(brandSoundForms, markupForms, input, brackets, prompt);
        return prompt;
    }
    const bool isA4A = context == A4AContext;
    const PromptForm* const begin = isA4A ? promptForms : audioForms;
    if (!parseForms(begin, std::end(promptForms), input, brackets, prompt)) {
        ORV_LOGGER("static PromptData PromptData::parse(const QString&, PromptContext)").warning()
            << "Unable to parse given string: " << input;
        return PromptData(input, PromptText);
    }
    if (isA4A && prompt.mode == PromptFile) {
        const QString fileName = prompt.text;
        a4AParse(fileName, prompt);
    }
    return prompt;
}

bool PromptData::isMp3ToWavConversionNeeded() const
{
    if (mode != PromptAudio) {
        return false;
    }
    const QFileInfo file(text);
    return file.suffix().compare(QLatin1String("mp3"), Qt::CaseInsensitive) == 0 && file.exists();
}

QHash<QString, QString> loadBrandSounds(const QString& brand)
{
    return loadBrandSounds(brand, brandSoundsFileName());
}

QHash<QString, QString> loadBrandSounds(const QString& brand, const QString& fileName)
{
    brandSounds.clear();
    const QJsonDocument document = JsonFile::loadDocument(fileName);
    const QString lowerCaseBrand = brand.toLower();
    const QJsonArray sounds = document.array(); // empty unless the document is an array
    for (const QJsonValue& element : sounds) {
        const QJsonObject sound = element.toObject(); // empty unless the element is an object
        const QJsonValue id = sound.value(QLatin1String("id"));
        const QJsonValue value = sound.value(QLatin1String("value"));
        if (id.isUndefined() || value.isUndefined()) {
            continue;
        }
        QString path = value.toString();
        if (holdsPlaceMarker(path)) {
            path = path.arg(lowerCaseBrand);
        }
        brandSounds.insert(id.toString(), path);
        brandSounds.insert(id.toString() + QLatin1Char('.'), path);
    }
    return brandSounds;
}

QString soundPath(const QString& id)
{
    if (brandSounds.isEmpty()) {
        loadBrandSounds(QStringLiteral("TYX"));
    }
    return brandSounds.value(id);
}
