#include "shell/listing.h"

#include "shell/output.h"
#include "text.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QVariant>

#include <algorithm>
#include <cwchar>

namespace {

QString textOf(const QJsonValue& value)
{
    return value.isString()   ? onOneLine(value.toString())
           : value.isDouble() ? QString::number(value.toInt())
           : value.isBool()   ? QLatin1String(value.toBool() ? "yes" : "no")
                              : onOneLine(value.toVariant().toStringList().join(u", "_s));
}

QJsonObject objectOf(const Record& record)
{
    QJsonObject object;
    for (const Field& field : record) {
        if (field.name != nullptr) {
            object.insert(QLatin1String(field.name), field.value);
        }
    }
    return object;
}

/** How many columns of a terminal @p text takes: two for a wide character, none for an accent. */
int displayWidth(const QString& text)
{
    const QVector<uint> characters = text.toUcs4();
    int width = 0;
    for (const uint character : characters) {
        const int columns = wcwidth(wchar_t(character));
        width += columns >= 0 ? columns : 1;
    }
    return width;
}

} // namespace

QJsonValue orNull(const QString& text)
{
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

void printJson(const QJsonObject& object)
{
    print(QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)) + u'\n');
}

void printRecord(bool isJson, const Record& record)
{
    if (isJson) {
        printJson(objectOf(record));
        return;
    }
    QString text;
    for (const Field& field : record) {
        const auto append = [&](const QJsonValue& value) {
            text += QString::fromUtf8(field.shown).arg(textOf(value), field.width);
        };
        if (field.value.isArray() && !field.shown.isNull()) {
            const QJsonArray values = field.value.toArray();
            std::for_each(values.begin(), values.end(), append);
        } else if (!field.value.isNull() && !field.value.isUndefined() && !field.shown.isNull()) {
            append(field.value);
        }
    }
    print(text);
}

Listing::Listing(bool isJson)
    : isJson(isJson)
{}

void Listing::add(const Record& record)
{
    if (isJson) {
        printJson(objectOf(record));
        return;
    }
    QStringList headings;
    QStringList cells;
    for (const Field& field : record) {
        if (!field.shown.isNull()) {
            headings += QString::fromUtf8(field.shown);
            const QString text = textOf(field.value);
            cells += text.isEmpty() ? u"-"_s : text;
        }
    }
    if (rows.isEmpty() && !headings.join(QString()).isEmpty()) {
        rows += headings;
    }
    rows += cells;
}

void Listing::finish() const
{
    QVector<int> widths(rows.isEmpty() ? 0 : rows[0].size());
    for (const QStringList& row : rows) {
        for (int i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], displayWidth(row[i]));
        }
    }
    for (const QStringList& row : rows) {
        QString line;
        for (int i = 0; i < row.size(); ++i) {
            const int gap = i + 1 < row.size() ? widths[i] + 2 - displayWidth(row[i]) : 0;
            line += row[i] + QString(gap, u' ');
        }
        print(line + u'\n');
    }
}
