#include "comparison.h"

#include <core/parsers/jsonfile.h>

#include <QStringList>

namespace {

/** An object of 20 keys; "key7" contains the next level. */
QJsonObject nested(int depth) {
    QJsonObject object;
    for (int i = 0; i < 20; ++i) { object.insert(QStringLiteral("key%1").arg(i), i); }
    if (depth > 1) { object.insert(QStringLiteral("key7"), nested(depth - 1)); }
    return object;
}

} // namespace

void addJson() {
    for (const int depth : {1, 3, 6}) {
        for (const bool isHit : {true, false}) {
            const QJsonObject object = nested(depth);
            const JsonPath root(object);
            QStringList keys;
            for (int i = 1; i < depth; ++i) { keys.append(QStringLiteral("key7")); }
            keys.append(isHit ? QStringLiteral("key3") : QStringLiteral("none"));
            const QString path = keys.join(QLatin1Char('/'));
            addComparison({"JsonPath::value", std::to_string(depth) + (isHit ? " deep, hit" : " deep, miss"),
                [root, path] { root.value(path, 0); },
                {{"chained QJsonObject",
                    [object, keys] {
                        QJsonObject current = object;
                        for (int i = 0; i + 1 < keys.size(); ++i) { current = current.value(keys[i]).toObject(); }
                        const QJsonValue value = current.value(keys.last());
                        return value.isUndefined() ? QJsonValue(0) : value;
                    }}},
                0});
        }
    }
}
