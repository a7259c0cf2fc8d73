#include "checks/jsontext.h"

Findings checkSettings(const QByteArray& content, const CheckOptions&)
{
    Findings findings;
    const JsonText text(content, findings);
    if (text.document.isArray()) {
        findings +=
            {{}, Rule::NotLoaded, u"no setting is found: an object is needed, not an array"_s};
        return findings;
    }
    for (const JsonText::Member& member : text.members) {
        if (member.key.contains(u'/')) {
            findings += {member.place, Rule::UnreachableKey,
                u"no path leads to the key \"%1\", as it holds a slash"_s.arg(member.key)};
        }
    }
    return findings;
}
