#include "checks/jsontext.h"

#include <core/speech/speechchecksummanager.h>

namespace {

using Manager = SpeechChecksumManager;

/** Why the library cannot find an entry; empty if it can. */
QString problemOf(const QJsonObject& entry, const Manager::ChecksumKey& key)
{
    if (key.filePath.isEmpty()) {
        return u"\"filePath\" is missing or empty"_s;
    }
    if (convertLanguageIdToIso(key.language).isEmpty()) {
        return u"\"language\" is the value of no language"_s;
    }
    if (key.type != Manager::DefaultChecksum && key.type != Manager::AlternateChecksum) {
        return u"\"type\" is neither 0 nor 1"_s;
    }
    for (const char* name : {"language", "type", "checksum"}) {
        if (!entry.contains(QLatin1String(name))) {
            return u"no \"%1\""_s.arg(QLatin1String(name));
        }
    }
    static const QRegularExpression digest(u"^[0-9a-f]{32}\\z"_s);
    const QString checksum = entry.value(u"checksum"_s).toVariant().toString();
    return digest.match(checksum).hasMatch()
               ? QString()
               : u"\"checksum\" is not 32 digits 0-9 and a-f, so no file has it"_s;
}

} // namespace

Findings checkStore(const QByteArray& content, const CheckOptions&)
{
    QHash<QString, int> lines; // of the entries, by key
    const auto check = [&](const QJsonObject& entry, const Place& place, Findings& findings) {
        // The library converts members of other types too.
        const QVariantMap members = entry.toVariantMap();
        const Manager::ChecksumKey key(members[u"filePath"_s].toString(),
            Language(members[u"language"_s].toInt()),
            Manager::ChecksumType(members[u"type"_s].toInt()));
        if (key.filePath.contains(u';')) {
            findings += {place, Rule::LostPath,
                u"lost when the store is written: a path with \";\": \"%1\""_s.arg(key.filePath)};
        } else if (const QString problem = problemOf(entry, key); !problem.isEmpty()) {
            findings += {place, Rule::BadValue, problem};
        }
        int& line = lines[key.toString()];
        if (line > 0) {
            findings += {place, Rule::Overwritten,
                u"overwrites the entry of line %1, which has the same path, language "
                "and type"_s.arg(line)};
        }
        line = place.line;
    };
    return checkElements(content, "not an object: becomes an entry without a path", check);
}
