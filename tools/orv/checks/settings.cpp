#include "checks/jsontext.h"

Findings checkSettings(const QByteArray& content, const CheckOptions&)
{
    Findings findings;
    const JsonText text(content, findings);
    if (text.document.isArray()) {
        findings.append({1, 1, Rule::NotLoaded,
            QStringLiteral("no setting is found: an object is needed, not an array")});
        return findings;
    }
    for (const JsonText::Member& member : text.members) {
        if (member.key.contains(QLatin1Char('/'))) {
            findings.append({member.place.line, member.place.column, Rule::UnreachableKey,
                QStringLiteral("no path leads to the key \"%1\", as it holds a slash")
                    .arg(member.key)});
        }
    }
    return findings;
}
