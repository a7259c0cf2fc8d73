#pragma once

#include "checks/finding.h"
#include "shell/input.h"
#include "shell/text.h"

#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>

/** A JSON text with the places of its parts, which a parsed document does not keep. */
class JsonText
{
public:
    /** A member of an object. */
    struct Member
    {
        QString key;
        Place place;
    };

    /** Reports a text that cannot be read, and members that overwrite others of the same object. */
    JsonText(const QByteArray& content, Findings& findings);

    QJsonDocument document;  ///< null when the text cannot be read
    QVector<Member> members; ///< of all objects, in the order of the text
    QVector<Place> elements; ///< of the outermost array

private:
    char next();
    QByteArray readString();
    void readValue(int depth);
    void readMember(int depth, QHash<QString, int>& lines);

    const QByteArray& text;
    Findings& findings;
    PlaceFinder places;
    int at = 0;
};

/** Reads JSON as JsonText does, and calls @p check with each object of the outermost array. */
template <typename Check>
void checkElements(
    const QByteArray& content, Findings& findings, const char* whenNoObject, Check check)
{
    const JsonText text(content, findings);
    if (text.document.isObject()) {
        findings.append(
            {1, 1, Rule::NotLoaded, u"nothing is loaded: an array is needed, not an object"_s});
    }
    for (int i = 0; i < text.elements.size() && text.document.isArray(); ++i) {
        const Place& place = text.elements[i];
        const QJsonValue element = text.document[i];
        if (element.isObject()) {
            check(element.toObject(), place);
        } else {
            findings.append(
                {place.line, place.column, Rule::Skipped, QString::fromUtf8(whenNoObject)});
        }
    }
}
