#include "checks.h"
#include "input.h"
#include "suggestion.h"
#include "tablereader.h"

#include <QBuffer>
#include <QRegularExpression>

namespace {

bool isDeclared(const EcoFile& file)
{
    return !file.header().version().isEmpty() || !file.header().encoding().isEmpty();
}

constexpr int mostFields = 200; // that are counted

/** How many fields the library finds in a line: the number of columns with which it takes it. */
QString fieldCount(const QString& line, char separator)
{
    EcoFile probe;
    probe.parseHeaderLine(QStringLiteral("#Separator %1").arg(uchar(separator), 0, 16));
    for (int count = 0; count <= mostFields; ++count) {
        probe.parseDataLine(line);
        if (!probe.rows().isEmpty()) {
            return QString::number(count);
        }
        probe.parseHeaderLine(QStringLiteral("#Column %1").arg(count));
    }
    return QStringLiteral("too many");
}

bool hasLoneQuote(const QString& line)
{
    return line.count(QLatin1Char('"')) % 2 != 0;
}

QString counted(const QString& count, const char* what)
{
    const char* const ending = count == QLatin1String("1") ? "" : "s";
    return QStringLiteral("%1 %2%3").arg(count, QLatin1String(what), QLatin1String(ending));
}

QString whyDropped(const QString& line, const EcoFile::Header& header)
{
    if (header.columns().isEmpty()) {
        return QStringLiteral("no columns are declared above it");
    }
    QString reason = counted(fieldCount(line, header.separator()), "field")
                     + QStringLiteral(" for ")
                     + counted(QString::number(header.columns().size()), "column");
    if (hasLoneQuote(line)) {
        reason += QStringLiteral(", with a quote that has no partner");
    }
    return reason;
}

/** What is wrong with a line that starts as a declaration does; nothing for a mere remark. */
QString checkDeclaration(const QString& line, const EcoFile::Header& before, const EcoFile& after)
{
    const QString word = line.section(QRegularExpression(QStringLiteral("\\s")), 0, 0).toLower();
    const EcoFile::Header& header = after.header();
    if (word == QLatin1String("#column")) {
        if (header.columns().size() == before.columns().size()) {
            return QStringLiteral(
                "declares no column: \"#Column NAME\" is needed, with single blanks");
        }
        if (before.columns().contains(header.columns().last())) {
            return QStringLiteral("column \"%1\" again: of its fields the last one counts")
                .arg(header.columns().last());
        }
        if (!after.rows().isEmpty()) {
            return QStringLiteral("a column below the first row, which lacks it");
        }
    } else if (word == QLatin1String("#separator")) {
        // Setting another one first shows whether the line sets any.
        EcoFile probe;
        const char other = header.separator() == 'x' ? 'y' : 'x';
        probe.parseHeaderLine(QStringLiteral("#Separator %1").arg(uchar(other), 0, 16));
        probe.parseHeaderLine(line);
        if (probe.header().separator() == other) {
            return QStringLiteral(
                "declares no separator: \"#Separator HEX\" is needed, such as 3B");
        }
        bool isLatin1 = false;
        const int code = line.section(QLatin1Char(' '), 1).toInt(&isLatin1, 16);
        if (!isLatin1 || code < 0 || code > 0xFF) {
            return QStringLiteral("no code of two digits, and taken for %1, \"%2\"")
                .arg(uchar(header.separator()), 2, 16, QLatin1Char('0'))
                .arg(QLatin1Char(header.separator()));
        }
    } else if (word == QLatin1String("#eco")) {
        EcoFile probe;
        probe.parseHeaderLine(line);
        if (!isDeclared(probe)) {
            return QStringLiteral(
                "declares no version: \"#ECO VERSION ENCODING\" is needed, with single blanks");
        }
    } else {
        for (const char* declaration : {"#Column", "#Separator", "#ECO"}) {
            const QString meant = QString::fromLatin1(declaration);
            if (editDistance(word, meant.toLower()) <= meant.size() / 3) { // for a slip of the pen
                return QStringLiteral("a comment, did you mean \"%1\"?").arg(meant);
            }
        }
    }
    return QString();
}

} // namespace

Findings checkTable(const QByteArray& content, const CheckOptions&)
{
    Findings findings;
    int number = 0;
    const QList<QByteArray> lines = content.split('\n');
    for (const QByteArray& line : lines) {
        ++number;
        QString text;
        if (!decodeUtf8(line, text)) {
            findings.append({number, QStringLiteral("not valid UTF-8")});
        }
    }
    EcoFile::Header before; // not the rows: they would be copied at every remark
    QBuffer buffer;
    buffer.setData(content);
    buffer.open(QIODevice::ReadOnly);
    readTable(buffer, [&](const TableLine& line, const EcoFile& after) {
        if (line.isDeclaration) {
            const QString reason = checkDeclaration(line.text, before, after);
            if (!reason.isEmpty()) {
                findings.append({line.number, reason});
            }
            before = after.header();
        } else if (line.isDropped) {
            findings.append(
                {line.number, QStringLiteral("dropped: ") + whyDropped(line.text, after.header())});
        } else if (hasLoneQuote(line.text)) {
            findings.append({line.number,
                QStringLiteral("a quote that has no partner is lost, and ends its field")});
        }
    });
    return findings;
}
