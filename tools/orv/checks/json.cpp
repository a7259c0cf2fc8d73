// The checks of JSON files: brand sounds, checksum stores and settings.
#include "checks/finding.h"

#include <core/speech/speechchecksummanager.h>

#include <cctype>

namespace {

using Manager = SpeechChecksumManager;
using Lines = QHash<QString, int>;

/** A member of an object, or an element of an array, which has no key. */
struct Part
{
    QString key;
    Place place;
};

/** A JSON text with the places of its parts, which a parsed document does not keep. */
struct JsonText
{
    QJsonDocument document; ///< null if the text cannot be read
    /// The elements of an outermost array, or the members of all objects in an outermost object.
    QVector<Part> parts;
};

/** An array or object that is being read. */
struct Level
{
    bool isObject;
    Lines lines; ///< of the members, by their keys
};

Finding overwriting(const QString& key, int line, const Place& place)
{
    return {place, Rule::Overwritten,
        u"\"%1\" overwrites that of line %2"_s.arg(key, QString::number(line))};
}

/** Reads JSON text. Reports invalid text, and members that overwrite others of the same object. */
JsonText readText(const QByteArray& content, Findings& findings)
{
    JsonText text;
    PlaceFinder places(content);
    QJsonParseError error;
    text.document = QJsonDocument::fromJson(content, &error);
    if (text.document.isNull()) {
        findings += {places.at(error.offset), Rule::NotLoaded,
            u"nothing is loaded: "_s + error.errorString()};
        return text;
    }
    QVector<Level> levels;
    bool isStart = false; // of a member or element
    for (Size at = 0; at < content.size(); ++at) {
        const Size begin = at;
        const char first = content[at];
        if (std::isspace(uchar(first)) != 0) {
            continue;
        }
        while (first == '"' && content[++at] != '"') { // in a valid text, each string ends
            at += content[at] == '\\' ? 1 : 0;
        }
        const bool isEnd = first == ']' || first == '}';
        const bool isPart = isStart && !isEnd;
        const bool isMember = isPart && levels.last().isObject;
        const bool isOutermost = isPart && levels.size() == 1;
        if (isMember || isOutermost) {
            const Place place = places.at(begin);
            QString key;
            if (isMember) {
                const QByteArray quoted = content.mid(begin, at + 1 - begin);
                key = QJsonDocument::fromJson('[' + quoted + ']').array().at(0).toString();
                int& line = levels.last().lines[key];
                if (line > 0) {
                    findings += overwriting(key, line, place);
                }
                line = place.line;
            }
            if (isOutermost || text.document.isObject()) {
                text.parts.append({key, place});
            }
        }
        if (first == '[' || first == '{') {
            levels += Level{first == '{', {}};
        } else if (isEnd) {
            levels.removeLast();
        }
        isStart = first == '[' || first == '{' || first == ',';
    }
    return text;
}

/** Reads JSON text, and calls @p check with each object of the outermost array. */
template <typename Check>
Findings checkElements(const QByteArray& content, const char* whenNoObject, Check check)
{
    Findings findings;
    const JsonText text = readText(content, findings);
    if (text.document.isObject()) {
        findings +=
            {{}, Rule::NotLoaded, u"nothing is loaded: an array is needed, not an object"_s};
        return findings;
    }
    for (Size i = 0; i < text.parts.size(); ++i) {
        const QJsonValue element = text.document[i];
        const Place& place = text.parts[i].place;
        if (element.isObject()) {
            check(element.toObject(), place, findings);
        } else {
            findings += {place, Rule::Skipped, QString::fromUtf8(whenNoObject)};
        }
    }
    return findings;
}

/** Why the library cannot find an entry of a store; empty if it can. */
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

Findings checkSettings(const QByteArray& content, const CheckOptions&)
{
    Findings findings;
    const JsonText text = readText(content, findings);
    if (text.document.isArray()) {
        findings +=
            {{}, Rule::NotLoaded, u"no setting is found: an object is needed, not an array"_s};
    }
    for (const auto& [key, place] : text.parts) {
        if (key.contains(u'/')) {
            findings += {place, Rule::UnreachableKey,
                u"no path leads to the key \"%1\", as it holds a slash"_s.arg(key)};
        }
    }
    return findings;
}

Findings checkSounds(const QByteArray& content, const CheckOptions& options)
{
    Lines lines; // by id
    const auto check = [&](const QJsonObject& sound, const Place& place, Findings& findings) {
        for (const QString& name : {u"id"_s, u"value"_s}) {
            if (!sound.contains(name)) {
                findings += {place, Rule::Skipped, u"skipped: no \"%1\""_s.arg(name)};
                return;
            }
        }
        const QString id = sound.value(u"id"_s).toString();
        const QString path = sound.value(u"value"_s).toString();
        if (id.isEmpty() || path.isEmpty()) {
            const QString name = id.isEmpty() ? u"id"_s : u"value"_s;
            findings +=
                {place, Rule::BadValue, u"\"%1\" is not a text, or an empty one"_s.arg(name)};
        }
        const QString withStop = id + u'.'; // the library enters each sound twice
        const QString& entered = lines.contains(id) ? id : withStop;
        if (lines.contains(entered)) {
            findings += overwriting(entered, lines[entered], place);
        }
        lines[id] = place.line;
        lines[withStop] = place.line;
        const QString file = path.contains(u'%') ? path.arg(options.brand.toLower()) : path;
        if (!id.isEmpty() && !path.isEmpty() && !options.isFile(file)) {
            findings += {place, Rule::MissingFile, u"no such file: \"%1\""_s.arg(file)};
        }
    };
    return checkElements(content, "skipped: not an object", check);
}

Findings checkStore(const QByteArray& content, const CheckOptions&)
{
    Lines lines; // of the entries, by key
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
