#include "checks/jsonplaces.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <cctype>
#include <cstring>

JsonPlaces::JsonPlaces(const QByteArray& json)
    : text(json)
{
    if (text.startsWith("\xEF\xBB\xBF")) {
        at = 3; // the parser skips the mark, too
    }
    readValue(0);
}

const QVector<int>& JsonPlaces::elementLines() const
{
    return elements;
}

const QVector<JsonPlaces::Member>& JsonPlaces::members() const
{
    return memberList;
}

/** The next character that is no blank; NUL at the end. */
char JsonPlaces::next()
{
    for (; at < text.size() && std::isspace(uchar(text[at])) != 0; ++at) {
        line += text[at] == '\n' ? 1 : 0;
    }
    return at < text.size() ? text[at] : '\0';
}

/** Goes behind a string, and returns it as it is written. */
QByteArray JsonPlaces::readString()
{
    const int begin = at++;
    while (at < text.size() && text[at] != '"') {
        at += text[at] == '\\' ? 1 : 0; // what is escaped may be a quote, or a line break
        line += at < text.size() && text[at] == '\n' ? 1 : 0;
        ++at;
    }
    ++at;
    return text.mid(begin, at - begin);
}

void JsonPlaces::readValue(int depth)
{
    const char first = next();
    if (first == '{' || first == '[') {
        QHash<QString, int> lines;
        for (++at; next() != '}' && next() != ']' && next() != '\0';) {
            if (first == '{') {
                readMember(depth, lines);
            } else {
                if (depth == 0) {
                    elements.append(line);
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

void JsonPlaces::readMember(int depth, QHash<QString, int>& lines)
{
    const int keyLine = line;
    const QByteArray array = '[' + readString() + ']';
    const QString key = QJsonDocument::fromJson(array).array().at(0).toString();
    memberList.append({key, keyLine, lines[key]});
    lines[key] = keyLine;
    next();
    ++at; // the colon
    readValue(depth + 1);
}

int lineAt(const QByteArray& text, int offset)
{
    return 1 + int(std::count(text.begin(), text.begin() + std::min(offset, text.size()), '\n'));
}
