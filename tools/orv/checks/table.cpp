#include "checks/checks.h"
#include "shell/input.h"
#include "shell/suggestion.h"
#include "shell/tablereader.h"

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

QString checkColumn(const EcoFile::Header& before, const EcoFile& after)
{
    const QString column = after.header().columns().last();
    if (before.columns().contains(column)) {
        return QStringLiteral("column \"%1\" again: of its fields the last one counts").arg(column);
    }
    if (!after.rows().isEmpty()) {
        return QStringLiteral("a column below the first row, which lacks it");
    }
    return QString();
}

QString checkSeparator(const QString& line, const EcoFile::Header& header)
{
    const int code = line.section(QLatin1Char(' '), 1).toInt(nullptr, 16);
    if (code >= 0 && code <= 0xFF) {
        return QString();
    }
    return QStringLiteral("no code of two digits, and taken for %1, \"%2\"")
        .arg(uchar(header.separator()), 2, 16, QLatin1Char('0'))
        .arg(QLatin1Char(header.separator()));
}

/** What is wrong with a line that declares something, or seems to; nothing for a mere remark. */
QString checkDeclaration(const QString& line, const EcoFile::Header& before, const EcoFile& after)
{
    // Setting another separator first shows whether the line sets any.
    const EcoFile::Header& header = after.header();
    EcoFile probe;
    const char other = header.separator() == 'x' ? 'y' : 'x';
    probe.parseHeaderLine(QStringLiteral("#Separator %1").arg(uchar(other), 0, 16));
    probe.parseHeaderLine(line);
    struct Declaration
    {
        QString name;
        bool isMade;
        QString whenNot;
    };
    const Declaration declarations[] = {
        {QStringLiteral("#Column"), !probe.header().columns().isEmpty(),
            QStringLiteral("declares no column: \"#Column NAME\" is needed, with single blanks")},
        {QStringLiteral("#Separator"), probe.header().separator() != other,
            QStringLiteral("declares no separator: \"#Separator HEX\" is needed, such as 3B")},
        {QStringLiteral("#ECO"), isDeclared(probe),
            QStringLiteral(
                "declares no version: \"#ECO VERSION ENCODING\" is needed, with single blanks")},
    };
    static const QRegularExpression blank(QStringLiteral("\\s"));
    const QString word = line.section(blank, 0, 0);
    for (const Declaration& declaration : declarations) {
        const QString& name = declaration.name;
        if (declaration.isMade && line.section(QLatin1Char(' '), 0, 0) != name) {
            return QStringLiteral("counts as \"%1\", as it starts so").arg(name);
        }
        if (!declaration.isMade && word.compare(name, Qt::CaseInsensitive) == 0) {
            return declaration.whenNot;
        }
        // For a slip of the pen; but hardly anything depends on the version.
        if (!declaration.isMade && name.size() > 4
            && editDistance(word.toLower(), name.toLower()) == 1) {
            return QStringLiteral("a comment, did you mean \"%1\"?").arg(name);
        }
    }
    return declarations[0].isMade   ? checkColumn(before, after)
           : declarations[1].isMade ? checkSeparator(line, header)
                                    : QString();
}

void checkEncoding(Findings& findings, const QByteArray& content)
{
    if (content.startsWith("\xFF\xFE") || content.startsWith("\xFE\xFF")) {
        return; // UTF-16, which is read as such
    }
    int number = 0;
    const QList<QByteArray> lines = content.split('\n');
    for (const QByteArray& line : lines) {
        ++number;
        QString text;
        if (!decodeUtf8(line, text)) {
            findings.append({number, QStringLiteral("not valid UTF-8")});
        }
    }
}

} // namespace

Findings checkTable(const QByteArray& content, const CheckOptions&)
{
    Findings findings;
    checkEncoding(findings, content);
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
