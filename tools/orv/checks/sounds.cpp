#include "checks/jsontext.h"

Findings checkSounds(const QByteArray& content, const CheckOptions& options)
{
    QHash<QString, int> lines; // by id
    const auto check = [&](const QJsonObject& sound, const Place& place, Findings& findings) {
        for (const QString& name : {u"id"_s, u"value"_s}) {
            if (!sound.contains(name)) {
                findings += {place, Rule::Skipped, u"skipped: no \"%1\""_s.arg(name)};
                return;
            }
        }
        const QString id = sound.value(u"id"_s).toString();
        const QString path = sound.value(u"value"_s).toString();
        if (id.isEmpty() || path.isEmpty()) {
            const QString name = id.isEmpty() ? u"id"_s : u"value"_s;
            findings +=
                {place, Rule::BadValue, u"\"%1\" is not a text, or an empty one"_s.arg(name)};
        }
        const QString ids[] = {id, id + u'.'};
        for (const QString& entered : ids) {
            if (lines.contains(entered)) {
                const QString line = QString::number(lines[entered]);
                findings += {place, Rule::Overwritten,
                    u"\"%1\" overwrites that of line %2"_s.arg(entered, line)};
                break;
            }
        }
        for (const QString& entered : ids) {
            lines[entered] = place.line;
        }
        const QString file = path.contains(u'%') ? path.arg(options.brand.toLower()) : path;
        if (!id.isEmpty() && !path.isEmpty() && !options.isFile(file)) {
            findings += {place, Rule::MissingFile, u"no such file: \"%1\""_s.arg(file)};
        }
    };
    return checkElements(content, "skipped: not an object", check);
}
