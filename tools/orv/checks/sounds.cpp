#include "checks/jsontext.h"

Findings checkSounds(const QByteArray& content, const CheckOptions& options)
{
    Findings findings;
    QHash<QString, int> lines; // by the ids that are entered
    const QString idName = QStringLiteral("id");
    const QString valueName = QStringLiteral("value");
    const auto check = [&](const QJsonObject& sound, const Place& place) {
        const auto add = [&](Rule rule, const QString& text) {
            findings.append({place.line, place.column, rule, text});
        };
        for (const QString& name : {idName, valueName}) {
            if (!sound.contains(name)) {
                add(Rule::Skipped, QStringLiteral("skipped: no \"%1\"").arg(name));
                return;
            }
        }
        const QString id = sound.value(idName).toString();
        const QString path = sound.value(valueName).toString();
        if (id.isEmpty() || path.isEmpty()) {
            add(Rule::BadValue, QStringLiteral("\"%1\" is not a text, or an empty one")
                                    .arg(id.isEmpty() ? idName : valueName));
        }
        const QString ids[] = {id, id + QLatin1Char('.')};
        for (const QString& entered : ids) {
            if (lines.contains(entered)) {
                add(Rule::Overwritten, QStringLiteral("\"%1\" overwrites that of line %2")
                                           .arg(entered, QString::number(lines[entered])));
                break;
            }
        }
        for (const QString& entered : ids) {
            lines[entered] = place.line;
        }
        const bool hasMarker = path.contains(QLatin1Char('%'));
        const QString file = hasMarker ? path.arg(options.brand.toLower()) : path;
        if (!id.isEmpty() && !path.isEmpty() && !options.isFile(file)) {
            add(Rule::MissingFile, QStringLiteral("no such file: \"%1\"").arg(file));
        }
    };
    checkElements(content, findings, "skipped: not an object", check);
    return findings;
}
