#include <core/speech/speechcommon.h>

#include <core/log_p.h>
#include <core/parsers/jsonfile.h>
#include <core/speech/markuppattern_p.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>

#include <optional>

static_assert(sizeof(PromptMode) == 4 && sizeof(PromptContext) == 4, "sizes are interface");

namespace {

/** A form of markup and what its captures are, by number; 0 for none. */
struct MarkupForm
{
    MarkupPattern pattern;
    PromptMode mode;
    int text;
    int language = 0;
    int genre = 0;
};

using Pattern = MarkupPattern;

// Within each table the first form that matches wins.
constexpr MarkupForm offboardForms[] = {
    {Pattern(uR"~(<tts lang="(\S+)"/><offboard>(.*)</offboard>)~"), PromptOffboard, 2, 1},
    {Pattern(uR"~(<tts lang="(\S+)"/><offboard genre="(.*)">(.*)</offboard>)~"), PromptOffboard, 3,
        1, 2},
    {Pattern(uR"~(<offboard>(.*)</offboard>)~"), PromptOffboard, 1},
    {Pattern(uR"~(<offboard genre="(.*)">(.*)</offboard>)~"), PromptOffboard, 2, 0, 1},
};
// The language of these forms is accepted, but the record does not keep it.
constexpr MarkupForm audioForms[] = {
    {Pattern(uR"~(<audio path="(\S+)"/>)~"), PromptAudio, 1},
    {Pattern(uR"~(<audio language="(\S+)" path="(\S+)"/>)~"), PromptAudio, 2},
};
constexpr MarkupForm fileForms[] = {
    {Pattern(uR"~(<file path="(\S+)"/>)~"), PromptFile, 1},
    {Pattern(uR"~(<file language="(\S+)" path="(\S+)"/>)~"), PromptFile, 2},
};
constexpr MarkupForm textWithLanguage = {
    Pattern(uR"~(<text language="(\S+)">(.*)</text>)~"), PromptText, 2};
constexpr MarkupForm tagForms[] = {
    {Pattern(uR"~(<text>(.*)</text>)~"), PromptText, 1},
    textWithLanguage,
    {Pattern(uR"~(<phonetic>(.*)</phonetic>)~"), PromptText, 1},
    {Pattern(uR"~(<phonetic language="(\S+)">(.*)</phonetic>)~"), PromptText, 2},
};

/** The prompt that the first fitting form of a table asks for. */
template <std::size_t count>
std::optional<PromptData> parseForms(
    const MarkupForm (&forms)[count], const QString& input, const BracketPositions& brackets)
{
    for (const MarkupForm& form : forms) {
        if (const auto match = form.pattern.match(input, brackets)) {
            PromptData prompt(match->capture(form.text).toString(), form.mode);
            if (form.language != 0) {
                prompt.language = convertIsoToLanguageId(match->capture(form.language).toUtf8());
            }
            if (form.genre != 0) {
                prompt.genre = match->capture(form.genre).toString();
            }
            return prompt;
        }
    }
    return std::nullopt;
}

// From sound id to path, filled by loadBrandSounds().
QHash<QString, QString> brandSounds;

/** The brand sound that @p key names. */
std::optional<PromptData> parseBrandSound(const QString& key)
{
    const auto sound = brandSounds.constFind(key);
    return sound == brandSounds.constEnd() ? std::nullopt
                                           : std::make_optional(PromptData(*sound, PromptAudio));
}

/** The key of a brand sound: the content of text with a language, else the whole input. */
QString soundKey(const QString& input, const BracketPositions& brackets)
{
    const auto match = textWithLanguage.pattern.match(input, brackets);
    return match ? match->capture(textWithLanguage.text).toString() : input;
}

/** Off-board markup, else a file, which may hold off-board markup in its turn. */
std::optional<PromptData> parseA4A(const QString& input, const BracketPositions& brackets)
{
    if (auto prompt = parseForms(offboardForms, input, brackets)) {
        return prompt;
    }
    auto prompt = parseForms(fileForms, input, brackets);
    if (!prompt) {
        return std::nullopt;
    }
    QFile file(prompt->text);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        static constexpr char here[] = "bool<unnamed>::a4AParse(const QString&, PromptData&)";
        ORV_LOG(here).warning() << here << "Failed to open" << prompt->text;
        return prompt;
    }
    const QByteArray bytes = file.readAll();
    const QString content = QString::fromUtf8(bytes.constData()); // up to the first NUL
    const auto offboard = parseForms(offboardForms, content, findBrackets(content));
    return offboard ? offboard : prompt;
}

/** Whether QString::arg() would find a place for its argument, of which it else warns. */
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
    const QChar separator = QDir::separator();
    return QCoreApplication::applicationDirPath() + separator + QLatin1String("..") + separator
           + QLatin1String("share") + separator + QLatin1String("tts") + separator
           + QLatin1String("common.json");
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
    // Every form starts with a bracket: without one there is at most a brand sound.
    const BracketPositions brackets = findBrackets(input);

    if (context == BrandSoundContext) {
        const QString key = soundKey(input, brackets);
        return parseBrandSound(key).value_or(PromptData(key, PromptText));
    }
    if (brackets.isEmpty()) {
        return PromptData(input, PromptText);
    }
    if (context == A4AContext) {
        if (const auto prompt = parseA4A(input, brackets)) {
            return *prompt;
        }
    }
    if (const auto prompt = parseForms(audioForms, input, brackets)) {
        return *prompt;
    }
    if (const auto prompt = parseBrandSound(soundKey(input, brackets))) {
        return *prompt;
    }
    if (const auto prompt = parseForms(fileForms, input, brackets)) {
        return *prompt;
    }
    if (const auto prompt = parseForms(tagForms, input, brackets)) {
        return *prompt;
    }
    ORV_LOG("static PromptData PromptData::parse(const QString&, PromptContext)").warning()
        << "Unable to parse given string: " << input;
    return PromptData(input, PromptText);
}

bool PromptData::isMp3ToWavConversionNeeded() const
{
    if (mode != PromptAudio) {
        return false;
    }
    const QFileInfo file(text);
    return file.suffix().toLower() == QLatin1String("mp3") && file.exists();
}

QHash<QString, QString> loadBrandSounds(const QString& brand)
{
    brandSounds.clear();
    const QJsonDocument document = JsonFile::loadDocument(brandSoundsFileName());
    const QString lowerCaseBrand = brand.toLower();
    const QJsonArray sounds = document.array(); // empty unless the document is an array
    for (const QJsonValue& element : sounds) {
        const QJsonObject sound = element.toObject(); // empty unless the element is an object
        const auto id = sound.constFind(QLatin1String("id"));
        const auto value = sound.constFind(QLatin1String("value"));
        if (id == sound.constEnd() || value == sound.constEnd()) {
            continue;
        }
        QString path = value->toString();
        if (holdsPlaceMarker(path)) {
            path = path.arg(lowerCaseBrand);
        }
        brandSounds.insert(id->toString(), path);
        brandSounds.insert(id->toString() + QLatin1Char('.'), path);
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
