#include "checks/jsontext.h"
#include "shell/text.h"

Findings checkSounds(const QByteArray& content, const CheckOptions& options)
{
    Findings findings;
    QHash<QString, int> lines; // by the ids that are entered
    const QString idName = u"id"_s;
    const QString valueName = u"value"_s;
    const auto check = [&](const QJsonObject& sound, const Place& place) {
        const auto add = [&](Rule rule, const QString& text) {
            findings.append({place.line, place.column, rule, text});
        };
        for (const QString& name : {idName, valueName}) {
            if (!sound.contains(name)) {
                add(Rule::Skipped, u"skipped: no \"%1\""_s.arg(name));
                return;
            }
        }
        const QString id = sound.value(idName).toString();
        const QString path = sound.value(valueName).toString();
        if (id.isEmpty() || path.isEmpty()) {
            add(Rule::BadValue,
                u"\"%1\" is not a text, or an empty one"_s.arg(id.isEmpty() ? idName : valueName));
        }
        const QString ids[] = {id, id + u'.'};
        for (const QString& entered : ids) {
            if (lines.contains(entered)) {
                add(Rule::Overwritten, u"\"%1\" overwrites that of line %2"_s.arg(
                                           entered, QString::number(lines[entered])));
                break;
            }
        }
        for (const QString& entered : ids) {
            lines[entered] = place.line;
        }
        const bool hasMarker = path.contains(u'%');
        const QString file = hasMarker ? path.arg(options.brand.toLower()) : path;
        if (!id.isEmpty() && !path.isEmpty() && !options.isFile(file)) {
            add(Rule::MissingFile, u"no such file: \"%1\""_s.arg(file));
        }
    };
    checkElements(content, findings, "skipped: not an object", check);
    return findings;
}
