#include <core/parsers/ecofile.h>

#include <QFile>
#include <QMap>
#include <QStringView>
#include <QTextStream>
#include <QVarLengthArray>
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#include <QStringDecoder>
#endif

#include <algorithm>

namespace {

using Size = QString::size_type;

/** The position of a field in its line. */
struct Range
{
    Size begin;
    Size length;
};

} // namespace

Q_DECLARE_TYPEINFO(Range, Q_PRIMITIVE_TYPE);

// A row stores its line instead of a string for each field, and shares the places of the columns
// with the other rows, so it takes two allocations. A field that the caller may change becomes a
// string of its own, to which references stay valid.
struct EcoFile::Row::Data : QSharedData
{
    QString line;
    QHash<QString, int> places; // of the columns among the fields
    QVarLengthArray<Range, 8> fields;
    QMap<QString, QString> changed;
    quint16 entryId = 0;
};

namespace {

constexpr QLatin1Char quote('"');

/**
 * The field from @p begin on; null at the end.
 *
 * A field consists of quoted pieces and of characters other than separators and quotes; it may
 * begin with one separator, at @p begin. A quote without a partner belongs to no field. If the
 * separator is a quote, a field begins with it only if an even number of quotes follows.
 */
QStringView nextField(const QChar* begin, const QChar* end, QChar separator)
{
    const QChar* first = begin;
    const QChar* position = first;
    if (position != end && *position == separator
        && (separator != quote || std::count(position, end, quote) % 2 != 0)) {
        ++position;
    }
    while (position != end) {
        if (*position == quote) {
            const QChar* const partner = std::find(position + 1, end, quote);
            if (partner != end) {
                position = partner + 1;
                continue;
            }
        } else if (*position != separator) {
            ++position;
            continue;
        }
        if (position != first) {
            break;
        }
        first = ++position; // a quote without a partner belongs to no field
    }
    return position == first ? QStringView() : QStringView(first, position);
}

using Fields = QVarLengthArray<QStringView, 32>;

Fields splitFields(const QString& line, QChar separator)
{
    Fields fields;
    if (separator == QLatin1Char('^') || separator == QLatin1Char('\\')) {
        return fields; // no field matches, as in the invalid patterns "[^]" and "[\]"
    }
    const QChar* position = line.constBegin();
    for (QStringView field; !(field = nextField(position, line.constEnd(), separator)).isNull();
         position = field.end()) {
        fields.append(field.trimmed());
    }
    return fields;
}

/** Removes a leading semicolon, blank and quote, one each in this order, and a trailing quote. */
QStringView unquoted(QStringView field)
{
    // Always the semicolon: other separators stay, which is intended.
    for (const QLatin1Char opening : {QLatin1Char(';'), QLatin1Char(' '), quote}) {
        if (!field.isEmpty() && field.front() == opening) {
            field = field.mid(1);
        }
    }
    if (!field.isEmpty() && field.back() == quote) {
        field.chop(1);
    }
    return field;
}

} // namespace

const QString& EcoFile::Header::version() const
{
    return versionText;
}

const QString& EcoFile::Header::encoding() const
{
    return encodingText;
}

char EcoFile::Header::separator() const
{
    return separatorCharacter;
}

const QStringList& EcoFile::Header::columns() const
{
    return columnNames;
}

EcoFile::Row::Row()
    : data(new Data)
{}

EcoFile::Row::Row(const Row& other) = default;
EcoFile::Row& EcoFile::Row::operator=(const Row& other) = default;
EcoFile::Row::~Row() = default;

quint16 EcoFile::Row::entryId() const
{
    return data->entryId;
}

int EcoFile::Row::length() const
{
    return int(data->places.size());
}

QString& EcoFile::Row::operator[](const QString& column)
{
    const auto entry = data->changed.find(column);
    if (entry != data->changed.end()) {
        return *entry;
    }
    const QString text = qAsConst(*this)[column];
    if (!data->places.contains(column)) {
        data->places.insert(column, 0); // its text is in changed
    }
    return *data->changed.insert(column, text);
}

QString EcoFile::Row::operator[](const QString& column) const
{
    const auto place = data->places.constFind(column);
    if (place == data->places.constEnd()) {
        return QString();
    }
    const auto entry = data->changed.constFind(column);
    if (entry != data->changed.constEnd()) {
        return *entry;
    }
    const Range field = data->fields[*place];
    return data->line.mid(field.begin, field.length);
}

bool EcoFile::parse(const QString& fileName)
{
    QFile file(fileName);
    if (fileName.isEmpty() || !file.open(QIODevice::ReadOnly)) {
        return false;
    }
    // In the encoding of the locale, unless there is a byte order mark.
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    // Decode the whole file: if a block ends within a broken character, the stream drops the next.
    const QByteArray bytes = file.readAll();
    QStringDecoder decode(
        QStringConverter::encodingForData(bytes).value_or(QStringConverter::System));
    QString text = decode(bytes);
    QTextStream stream(&text);
#else
    QTextStream stream(&file);
#endif
    QString line;
    int dataLines = 0;
    const auto earlierRows = rowList.size();
    while (stream.readLineInto(&line)) {
        line = line.trimmed();
        if (line.startsWith(QLatin1Char('#'))) {
            parseHeaderLine(line);
        } else if (!line.isEmpty()) {
            parseDataLine(line);
            ++dataLines;
        }
    }
    droppedLines = dataLines - int(rowList.size() - earlierRows);
    return true;
}

int EcoFile::droppedLineCount() const
{
    return droppedLines;
}

void EcoFile::parseHeaderLine(const QString& line)
{
    const QStringList words = line.split(QLatin1Char(' '));
    if (line.startsWith(QLatin1String("#ECO "))) {
        if (words.size() == 3) {
            headerData.versionText = words[1].trimmed();
            headerData.encodingText = words[2].trimmed();
            if (headerData.encodingText.endsWith(QLatin1Char(';'))) {
                headerData.encodingText.chop(1);
            }
        }
    } else if (line.startsWith(QLatin1String("#Separator"))) {
        bool isNumber = false;
        const int code = words.size() == 2 ? words[1].trimmed().toInt(&isNumber, 16) : 0;
        if (isNumber) {
            headerData.separatorCharacter = char(code & 0xFF);
        }
    } else if (line.startsWith(QLatin1String("#Column"))) {
        if (words.size() == 2) {
            const QString name = words[1].trimmed();
            headerData.columnNames.append(name);
            const auto known = placesByName.constFind(name);
            const int place = known != placesByName.constEnd() ? *known : int(placesByName.size());
            placesByName.insert(name, place);
            columnPlaces.append(place);
        }
    }
}

void EcoFile::parseDataLine(const QString& line)
{
    const Fields fields = splitFields(line, QLatin1Char(headerData.separatorCharacter));
    if (fields.size() != headerData.columnNames.size()) {
        return;
    }
    Row row;
    Row::Data& data = *row.data;
    data.line = QString(line.constData(), line.size()); // without the reader's spare capacity
    data.places = placesByName;
    data.fields.resize(placesByName.size());
    for (Size i = 0; i < fields.size(); ++i) {
        const QStringView field = unquoted(fields[i]);
        data.fields[columnPlaces[i]] = {
            Size(field.begin() - line.constBegin()), Size(field.size())};
    }
    data.entryId = quint16(rowList.size() + 1);
    rowList.append(row);
}

int EcoFile::fieldCount(const QString& line) const
{
    return int(splitFields(line, QLatin1Char(headerData.separatorCharacter)).size());
}

const EcoFile::Header& EcoFile::header() const
{
    return headerData;
}

const QList<EcoFile::Row>& EcoFile::rows() const
{
    return rowList;
}
