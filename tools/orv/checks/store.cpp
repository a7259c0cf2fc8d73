#include "checks/jsontext.h"

#include <core/speech/speechchecksummanager.h>

#include <QRegularExpression>
#include <QVariantMap>

namespace {

using Manager = SpeechChecksumManager;

/** What keeps an entry from being found; or an empty text. */
QString problemOf(const QJsonObject& entry, const Manager::ChecksumKey& key)
{
    if (key.filePath.isEmpty()) {
        return QStringLiteral("\"filePath\" is missing or empty");
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
    const QString checksum = entry.value(QLatin1String("checksum")).toVariant().toString();
    return digest.match(checksum).hasMatch()
               ? QString()
               : QStringLiteral("\"checksum\" is not 32 digits 0-9 and a-f, so no file has it");
}

} // namespace

Findings checkStore(const QByteArray& content, const CheckOptions&)
{
    Findings findings;
    QHash<QString, int> lines; // by the keys of the entries
    const auto check = [&](const QJsonObject& entry, const Place& place) {
        const auto add = [&](Rule rule, const QString& text) {
            findings.append({place.line, place.column, rule, text});
        };
        // As the library reads them, whatever their types are.
        const QVariantMap members = entry.toVariantMap();
        const Manager::ChecksumKey key(members[QStringLiteral("filePath")].toString(),
            Language(members[QStringLiteral("language")].toInt()),
            Manager::ChecksumType(members[QStringLiteral("type")].toInt()));
        if (key.filePath.contains(QLatin1Char(';'))) {
            add(Rule::LostPath,
                QStringLiteral("lost when the store is written: a path with \";\": \"%1\"")
                    .arg(key.filePath));
        } else if (const QString problem = problemOf(entry, key); !problem.isEmpty()) {
            add(Rule::BadValue, problem);
        }
        int& line = lines[key.toString()];
        if (line > 0) {
            add(Rule::Overwritten,
                QStringLiteral("overwrites the entry of line %1, which has the same path, language "
                               "and type")
                    .arg(line));
        }
        line = place.line;
    };
    checkElements(content, findings, "not an object: becomes an entry without a path", check);
    return findings;
}
