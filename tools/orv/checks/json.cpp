#include "checks/checks.h"
#include "checks/jsonplaces.h"

#include <core/parsers/jsonfile.h>
#include <core/speech/speechchecksummanager.h>

#include <QHash>
#include <QJsonArray>
#include <QRegularExpression>
#include <QVariantMap>

#include <optional>

namespace {

/** A JSON text that can be read, and the findings of any such. */
class JsonText
{
public:
    JsonText(const QByteArray& content, Findings& findings)
    {
        QJsonParseError error;
        document = QJsonDocument::fromJson(content, &error);
        if (document.isNull()) {
            findings.append({lineAt(content, error.offset),
                QStringLiteral("nothing is loaded: ") + error.errorString()});
            return;
        }
        places.emplace(content);
        for (const JsonPlaces::Member& member : places->members()) {
            if (member.overwrittenLine > 0) {
                findings.append(
                    {member.line, QStringLiteral("\"%1\" overwrites that of line %2")
                                      .arg(member.key, QString::number(member.overwrittenLine))});
            }
        }
    }

    QJsonDocument document;
    std::optional<JsonPlaces> places; ///< of a text that can be read
};

/** Calls @p check with each object of the outermost array and its line. */
template <typename Check>
void checkElements(
    const QByteArray& content, Findings& findings, const char* whenNoObject, Check check)
{
    const JsonText text(content, findings);
    if (text.document.isObject()) {
        findings.append(
            {1, QStringLiteral("nothing is loaded: an array is needed, not an object")});
    }
    const QJsonArray elements = text.document.array();
    for (int i = 0; i < elements.size(); ++i) {
        const int line = text.places->elementLines()[i];
        if (elements[i].isObject()) {
            check(elements[i].toObject(), line);
        } else {
            findings.append({line, QString::fromUtf8(whenNoObject)});
        }
    }
}

bool isEntered(const QJsonObject& sound)
{
    return sound.contains(QStringLiteral("id")) && sound.contains(QStringLiteral("value"));
}

/** What keeps a sound from being entered, or makes it useless; or nothing. */
QString checkSound(const QJsonObject& sound)
{
    const QString names[] = {QStringLiteral("id"), QStringLiteral("value")};
    for (const QString& name : names) {
        if (!sound.contains(name)) {
            return QStringLiteral("skipped: no \"%1\"").arg(name);
        }
    }
    for (const QString& name : names) {
        if (sound.value(name).toString().isEmpty()) {
            return QStringLiteral("\"%1\" is no text, or an empty one").arg(name);
        }
    }
    return QString();
}

/** What keeps an entry of a checksum store from being found; or nothing. @p key is the entry's. */
QString checkEntry(const QJsonObject& entry, SpeechChecksumManager::ChecksumKey& key)
{
    using Manager = SpeechChecksumManager;
    // As the library reads them: whatever their types are.
    const QVariantMap members = entry.toVariantMap();
    key = {members[QStringLiteral("filePath")].toString(),
        Language(members[QStringLiteral("language")].toInt()),
        Manager::ChecksumType(members[QStringLiteral("type")].toInt())};
    if (key.filePath.isEmpty()) {
        return QStringLiteral("\"filePath\" is missing or empty");
    }
    if (key.filePath.contains(QLatin1Char(';'))) {
        return QStringLiteral("lost when the store is written: a path with \";\": \"%1\"")
            .arg(key.filePath);
    }
    if (convertLanguageIdToIso(key.language).isEmpty()) {
        return QStringLiteral("\"language\" is the value of no language");
    }
    if (key.type != Manager::DefaultChecksum && key.type != Manager::AlternateChecksum) {
        return QStringLiteral("\"type\" is neither 0 nor 1");
    }
    for (const char* name : {"language", "type", "checksum"}) {
        if (!entry.contains(QLatin1String(name))) {
            return QStringLiteral("no \"%1\"").arg(QLatin1String(name));
        }
    }
    static const QRegularExpression digest(QStringLiteral("^[0-9a-f]{32}\\z"));
    if (!digest.match(members[QStringLiteral("checksum")].toString()).hasMatch()) {
        return QStringLiteral(
            "\"checksum\" is not of 32 digits 0-9 and a-f, and never equals one that is computed");
    }
    return QString();
}

} // namespace

Findings checkSounds(const QByteArray& content, const CheckOptions& options)
{
    Findings findings;
    QHash<QString, int> lines; // by everything that is entered
    checkElements(content, findings, "skipped: no object", [&](const QJsonObject& sound, int line) {
        const QString reason = checkSound(sound);
        if (!reason.isEmpty()) {
            findings.append({line, reason});
        }
        if (!isEntered(sound)) {
            return;
        }
        const QString id = sound.value(QStringLiteral("id")).toString();
        for (const QString& entered : {id, id + QLatin1Char('.')}) {
            if (lines.contains(entered)) {
                findings.append({line, QStringLiteral("\"%1\" overwrites that of line %2")
                                           .arg(entered, QString::number(lines[entered]))});
                break;
            }
        }
        lines[id] = line;
        lines[id + QLatin1Char('.')] = line;
        if (!reason.isEmpty()) {
            return;
        }
        const QString path = sound.value(QStringLiteral("value")).toString();
        const bool hasMarker = path.contains(QLatin1Char('%'));
        checkFile(findings, line, hasMarker ? path.arg(options.brand.toLower()) : path, options);
    });
    return findings;
}

Findings checkStore(const QByteArray& content, const CheckOptions&)
{
    Findings findings;
    QHash<QString, int> lines; // by the keys of the entries
    checkElements(content, findings, "no object: becomes an entry without a path",
        [&](const QJsonObject& entry, int line) {
            SpeechChecksumManager::ChecksumKey key;
            const QString reason = checkEntry(entry, key);
            if (!reason.isEmpty()) {
                findings.append({line, reason});
            }
            const int earlier = lines.value(key.toString());
            if (earlier > 0) {
                findings.append({line,
                    QStringLiteral(
                        "overwrites the entry of line %1, which has its path, language and type")
                        .arg(earlier)});
            }
            lines[key.toString()] = line;
        });
    return findings;
}

Findings checkSettings(const QByteArray& content, const CheckOptions&)
{
    Findings findings;
    const JsonText text(content, findings);
    if (text.document.isArray()) {
        findings.append(
            {1, QStringLiteral("no setting is found: an object is needed, not an array")});
    } else if (text.places) {
        for (const JsonPlaces::Member& member : text.places->members()) {
            if (member.key.contains(QLatin1Char('/'))) {
                findings.append({member.line,
                    QStringLiteral("out of reach of any path: the key \"%1\" holds a slash")
                        .arg(member.key)});
            }
        }
    }
    return findings;
}
