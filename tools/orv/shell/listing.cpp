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
    QStringList headings;
    for (const Column& column : columns) {
        isPrintedAtOnce &= column.width > 0;
        if (column.isInTable) {
            headings += QLatin1String(column.heading);
        }
    }
    if (!headings.join(QString()).isEmpty()) {
        rows += headings;
    }
}

void Listing::add(const QVector<QJsonValue>& cells)
{
    QJsonObject object;
    QStringList row;
    for (int i = 0; i < columns.size(); ++i) {
        object.insert(QLatin1String(columns[i].field), cells[i]);
        if (columns[i].isInTable) {
            row += textOf(cells[i]).leftJustified(columns[i].width);
        }
    }
    if (isJson) {
        printJson(object);
    } else if (isPrintedAtOnce) {
        printTable({row});
    } else {
        rows += row;
    }
}

void Listing::finish() const
{
    const bool hasHeadings = !isPrintedAtOnce && qstrlen(columns.first().heading) > 0;
    if (!isJson && rows.size() > (hasHeadings ? 1 : 0)) {
        printTable(rows);
    }
}
