#include "checks/jsontext.h"

#include <QHash>
#include <QJsonArray>

#include <cctype>

namespace {

/** An array or object that is being read. */
struct Level
{
    bool isObject;
    QHash<QString, int> lines; ///< of the members, by their keys
};

QString keyOf(const QByteArray& text)
{
    return QJsonDocument::fromJson('[' + text + ']').array().at(0).toString();
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
            const QString key = keyOf(content.mid(begin, at + 1 - begin));
            const Place place = places.at(begin);
            if (document.isObject()) {
                members.append({key, place});
            }
            int& line = levels.last().lines[key];
            if (line > 0) {
                findings += {place, Rule::Overwritten,
                    u"\"%1\" overwrites that of line %2"_s.arg(key, QString::number(line))};
            }
            line = place.line;
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
