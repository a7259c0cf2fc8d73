#include "shell/listing.h"

#include "shell/output.h"
#include "shell/text.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QVariant>

namespace {

QString textOf(const QJsonValue& value)
{
    if (value.isBool()) {
        return value.toBool() ? u"yes"_s : u"no"_s;
    }
    return onOneLine(value.isArray() ? value.toVariant().toStringList().join(u", "_s)
                                     : value.toVariant().toString());
}

} // namespace

Listing::Listing(bool isJson, const QVector<Column>& columns)
    : isJson(isJson)
    , columns(columns)
{
    for (const Column& column : columns) {
        if (column.isInTable && *column.heading != '\0') {
            headings += QLatin1String(column.heading);
        }
    }
}

void Listing::add(const QVector<QJsonValue>& cells)
{
    QJsonObject object;
    QStringList row;
    for (int i = 0; i < columns.size(); ++i) {
        object.insert(QLatin1String(columns[i].field), cells[i]);
        if (columns[i].isInTable) {
            row += textOf(cells[i]);
        }
    }
    if (isJson) {
        printJson(object);
    } else {
        rows += row;
    }
}

void Listing::finish() const
{
    if (!rows.isEmpty()) {
        printTable(headings.isEmpty() ? rows : QVector<QStringList>{headings} + rows);
    }
}
