#pragma once

#include "checks/finding.h"

/** A JSON text with the places of its parts, which a parsed document does not keep. */
struct JsonText
{
    /** A member of an object. */
    struct Member
    {
        QString key;
        Place place;
    };

    /** Reports a text that cannot be read, and members that overwrite others of the same object. */
    JsonText(const QByteArray& content, Findings& findings);

    QJsonDocument document;  ///< null if the text cannot be read
    QVector<Member> members; ///< of an outermost object and all objects in it
    QVector<Place> elements; ///< of an outermost array
};

/** Reads JSON text, and calls @p check with each object of the outermost array. */
template <typename Check>
Findings checkElements(const QByteArray& content, const char* whenNoObject, Check check)
{
    Findings findings;
    const JsonText text(content, findings);
    if (text.document.isObject()) {
        findings +=
            {{}, Rule::NotLoaded, u"nothing is loaded: an array is needed, not an object"_s};
    }
    for (Size i = 0; i < text.elements.size(); ++i) {
        const QJsonValue element = text.document[i];
        if (element.isObject()) {
            check(element.toObject(), text.elements[i], findings);
        } else {
            findings += {text.elements[i], Rule::Skipped, QString::fromUtf8(whenNoObject)};
        }
    }
    return findings;
}
