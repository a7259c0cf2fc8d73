#include "checks/jsontext.h"

#include <QJsonArray>

#include <cctype>
#include <cstring>

JsonText::JsonText(const QByteArray& content, Findings& findings)
    : text(content)
    , findings(findings)
    , places(content)
{
    QJsonParseError error;
    document = QJsonDocument::fromJson(content, &error);
    if (document.isNull()) {
        findings += {places.at(error.offset), Rule::NotLoaded,
            u"nothing is loaded: "_s + error.errorString()};
        return;
    }
    at = text.startsWith("\xEF\xBB\xBF") ? 3 : 0; // the parser skips the mark, too
    readValue(0);
}

/** The next character that is no blank; NUL at the end. */
char JsonText::next()
{
    while (at < text.size() && std::isspace(uchar(text[at])) != 0) {
        ++at;
    }
    return at < text.size() ? text[at] : '\0';
}

/** Goes behind a string, and returns it as it is written. */
QByteArray JsonText::readString()
{
    const int begin = at++;
    while (at < text.size() && text[at] != '"') {
        at += text[at] == '\\' ? 2 : 1; // an escaped character may be a quote
    }
    ++at;
    return text.mid(begin, at - begin);
}

void JsonText::readValue(int depth)
{
    const char first = next();
    if (first == '{' || first == '[') {
        QHash<QString, int> lines;
        for (++at; next() != '}' && next() != ']' && next() != '\0';) {
            if (first == '{') {
                readMember(depth, lines);
            } else {
                if (depth == 0) {
                    elements.append(places.at(at));
                }
                readValue(depth + 1);
            }
            at += next() == ',' ? 1 : 0;
        }
        ++at;
    } else if (first == '"') {
        readString();
    } else {
        while (at < text.size() && std::strchr(",]} \t\r\n", text[at]) == nullptr) {
            ++at;
        }
    }
}

/** @p lines has the lines of the object's earlier members by their keys. */
void JsonText::readMember(int depth, QHash<QString, int>& lines)
{
    const Place place = places.at(at);
    const QByteArray array = '[' + readString() + ']';
    const QString key = QJsonDocument::fromJson(array).array().at(0).toString();
    members.append({key, place});
    int& line = lines[key];
    if (line > 0) {
        findings += {place, Rule::Overwritten,
            u"\"%1\" overwrites that of line %2"_s.arg(key, QString::number(line))};
    }
    line = place.line;
    next();
    ++at; // the colon
    readValue(depth + 1);
}
