#include "checks/jsontext.h"

#include <cctype>

namespace {

/** An array or object that is being read. */
struct Level
{
    bool isObject;
    QHash<QString, int> lines; ///< of the members, by their keys
};

/** Reads a key; reports it if a member of the same object has it already. */
QString readKey(const QByteArray& text, const Place& place, Level& object, Findings& findings)
{
    QString key = QJsonDocument::fromJson('[' + text + ']').array().at(0).toString();
    int& line = object.lines[key];
    if (line > 0) {
        findings += {place, Rule::Overwritten,
            u"\"%1\" overwrites that of line %2"_s.arg(key, QString::number(line))};
    }
    line = place.line;
    return key;
}

} // namespace

JsonText::JsonText(const QByteArray& content, Findings& findings)
{
    PlaceFinder places(content);
    QJsonParseError error;
    document = QJsonDocument::fromJson(content, &error);
    if (document.isNull()) {
        findings += {places.at(error.offset), Rule::NotLoaded,
            u"nothing is loaded: "_s + error.errorString()};
        return;
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
        if (isStart && !isEnd && levels.last().isObject) {
            const Place place = places.at(begin);
            const QByteArray text = content.mid(begin, at + 1 - begin);
            const QString key = readKey(text, place, levels.last(), findings);
            if (document.isObject()) {
                members.append({key, place});
            }
        } else if (isStart && !isEnd && levels.size() == 1) {
            elements += places.at(begin);
        }
        if (first == '[' || first == '{') {
            levels += Level{first == '{', {}};
        } else if (isEnd) {
            levels.removeLast();
        }
        isStart = first == '[' || first == '{' || first == ',';
    }
}
