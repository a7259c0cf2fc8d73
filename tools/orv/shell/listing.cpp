#include "shell/listing.h"

#include "shell/output.h"

#include <algorithm>
#include <cwchar>

namespace {

bool isJson = false;

QString textOf(const QVariant& value)
{
    const int type = value.userType();
    return type == QMetaType::Bool          ? QLatin1String(value.toBool() ? "yes" : "no")
           : type == QMetaType::QStringList ? onOneLine(value.toStringList().join(u", "_s))
                                            : onOneLine(value.toString());
}

void printAsJson(const Record& record)
{
    QJsonObject object;
    for (const Field& field : record) {
        if (field.name != nullptr) {
            object.insert(QLatin1String(field.name), QJsonValue::fromVariant(field.value));
        }
    }
    printJson(object);
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

QVariant orNull(const QString& text)
{
    return text.isEmpty() ? QVariant() : QVariant(text);
}

void writeJson(bool isWanted)
{
    isJson = isWanted;
}

void printJson(const QJsonObject& object)
{
    print(QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)) + u'\n');
}

void printRecord(const Record& record)
{
    if (isJson) {
        return printAsJson(record);
    }
    QString shown;
    for (const auto& [name, value, around, width] : record) {
        if (around == nullptr || !value.isValid()) {
            continue;
        }
        const bool isList = value.userType() == QMetaType::QStringList;
        const QStringList texts = isList ? value.toStringList() : QStringList(textOf(value));
        for (const QString& text : texts) {
            shown += QString::fromUtf8(around).arg(onOneLine(text), width);
        }
    }
    print(shown);
}

void Listing::add(const Record& record)
{
    if (isJson) {
        return printAsJson(record);
    }
    QStringList headings;
    QStringList cells;
    for (const Field& field : record) {
        if (field.shown != nullptr && rows.isEmpty()) {
            headings += QString::fromUtf8(field.shown);
        }
        if (field.shown != nullptr) {
            const QString text = textOf(field.value);
            cells += text.isEmpty() ? u"-"_s : text;
        }
    }
    if (!headings.value(0).isEmpty()) {
        rows += headings;
    }
    rows += cells;
}

void Listing::finish() const
{
    QVector<int> columnWidths(rows.value(0).size());
    QVector<int> widths; // of the cells, row by row
    for (const QStringList& row : rows) {
        for (int i = 0; i < row.size(); ++i) {
            widths += displayWidth(row[i]);
            columnWidths[i] = std::max(columnWidths[i], widths.last());
        }
    }
    auto width = widths.cbegin();
    for (const QStringList& row : rows) {
        QString line;
        for (int i = 0; i < row.size(); ++i, ++width) {
            const int gap = i + 1 < row.size() ? columnWidths[i] + 2 - *width : 0;
            line += row[i] + QString(gap, u' ');
        }
        print(line + u'\n');
    }
}
