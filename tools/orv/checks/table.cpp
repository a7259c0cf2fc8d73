#include "checks/table.h"

#include "checks/finding.h"

#include <QTextStream>

namespace {

bool hasLoneQuote(const QString& line)
{
    return line.count(u'"') % 2 != 0;
}

QString whyDropped(const QString& line, const EcoFile& file)
{
    const int columns = int(file.header().columns().size());
    if (columns == 0) {
        return u"no columns are declared above it"_s;
    }
    return counted(file.fieldCount(line), "field") + u" for "_s + counted(columns, "column")
           + QLatin1String(hasLoneQuote(line) ? ", with a quote that has no partner" : "");
}

/** What is wrong with a column; empty if nothing. */
QString problemOfColumn(const EcoFile::Header& before, const EcoFile& after)
{
    const QString column = after.header().columns().last();
    if (before.columns().contains(column)) {
        return u"column \"%1\" again: its last field counts"_s.arg(column);
    }
    if (!after.rows().isEmpty()) {
        return u"a column below the first row, which does not have it"_s;
    }
    return QString();
}

/** What is wrong with a separator; empty if nothing. */
QString problemOfSeparator(const QString& line, const EcoFile::Header& header)
{
    const int code = line.section(u' ', 1).toInt(nullptr, 16);
    if (code >= 0 && code <= 0xFF) {
        return QString();
    }
    return u"not a code of two digits, so it counts as %1, \"%2\""_s
        .arg(uchar(header.separator()), 2, 16, QLatin1Char('0'))
        .arg(QLatin1Char(header.separator()));
}

/** What is wrong with a line that starts with "#"; empty if nothing, or for a comment. */
QString problemOfDeclaration(const QString& line, const EcoFile::Header& header)
{
    // Sets another separator first, to see whether the line changes it.
    EcoFile probe;
    const char other = header.separator() == 'x' ? 'y' : 'x';
    probe.parseHeaderLine(u"#Separator %1"_s.arg(uchar(other), 0, 16));
    probe.parseHeaderLine(line);
    struct Declaration
    {
        QString name;
        bool isMade;
        QString whenNot;
    };
    const Declaration declarations[] = {
        {u"#Column"_s, !probe.header().columns().isEmpty(),
            u"declares no column: \"#Column NAME\" is needed, with single blanks"_s},
        {u"#Separator"_s, probe.header().separator() != other,
            u"declares no separator: \"#Separator HEX\" is needed, such as 3B"_s},
        {u"#ECO"_s, !probe.header().version().isEmpty() || !probe.header().encoding().isEmpty(),
            u"declares no version: \"#ECO VERSION ENCODING\" is needed, with single blanks"_s},
    };
    static const QRegularExpression blank(u"\\s"_s);
    const QString word = line.section(blank, 0, 0);
    for (const Declaration& declaration : declarations) {
        const QString& name = declaration.name;
        if (declaration.isMade && line.section(u' ', 0, 0) != name) {
            return u"counts as \"%1\", because it starts like one"_s.arg(name);
        }
        if (!declaration.isMade && word.compare(name, Qt::CaseInsensitive) == 0) {
            return declaration.whenNot;
        }
        // A misspelt declaration; not of "#ECO", because the version has no effect.
        if (!declaration.isMade && name.size() > 4
            && editDistances(word.toLower(), name.toLower()).constLast() == 1) {
            return u"a comment, did you mean \"%1\"?"_s.arg(name);
        }
    }
    return declarations[1].isMade ? problemOfSeparator(line, header) : QString();
}

Findings checkEncoding(const QByteArray& content)
{
    Findings findings;
    if (content.startsWith("\xFF\xFE") || content.startsWith("\xFE\xFF")) {
        return findings; // UTF-16, which is read as such
    }
    LineReader reader(content);
    QByteArray line;
    QString text;
    while (reader.readBytes(line)) {
        if (!decodeUtf8(line, text)) {
            findings += {{reader.lineNumber, 1}, Rule::NotUtf8, u"not valid UTF-8"_s};
        }
    }
    return findings;
}

} // namespace

EcoFile readTable(
    const QByteArray& content, const std::function<void(const TableLine&, const EcoFile&)>& see)
{
    EcoFile file;
    Progress progress(content.size());
    qint64 seen = 0;
    QTextStream stream(content);
    QString line;
    for (int number = 1; stream.readLineInto(&line); ++number) {
        const qint64 position = stream.device()->pos();
        progress.advance(position - seen); // 0 for most lines: the stream reads blocks
        seen = position;
        const QString text = line.trimmed();
        const auto rowCount = file.rows().size();
        const bool isRow = !text.startsWith(u'#');
        if (!text.isEmpty()) {
            isRow ? file.parseDataLine(text) : file.parseHeaderLine(text);
            const Place place{number, line.indexOf(text) + 1};
            see({place, text, isRow && file.rows().size() == rowCount}, file);
        }
    }
    return file;
}

Findings checkTable(const QByteArray& content, const CheckOptions&)
{
    Findings declarations; // the findings of lines that start with "#"
    Findings others = checkEncoding(content);
    EcoFile::Header before; // without the rows, which would be copied for each declaration
    bool hasDropped = false;
    const EcoFile file = readTable(content, [&](const TableLine& line, const EcoFile& after) {
        if (line.text.startsWith(u'#')) {
            const bool isColumn = after.header().columns().size() > before.columns().size()
                                  && line.text.startsWith(u"#Column "_s);
            const QString problem = isColumn ? problemOfColumn(before, after)
                                             : problemOfDeclaration(line.text, after.header());
            if (!problem.isEmpty()) {
                declarations +=
                    {line.place, isColumn ? Rule::LateColumn : Rule::BadDeclaration, problem};
            }
            before = after.header();
        } else if (line.isDropped) {
            hasDropped = true;
            others += {line.place, Rule::DroppedRow, u"dropped: "_s + whyDropped(line.text, after)};
        } else if (hasLoneQuote(line.text)) {
            const Place quote{line.place.line, line.place.column + line.text.lastIndexOf(u'"')};
            others += {quote, Rule::LoneQuote,
                u"a quote that has no partner is lost, and ends its field"_s};
        }
    });
    if (file.header().columns().isEmpty() && hasDropped) {
        others = {{{}, Rule::NotATable, u"not a table file: no line declares a column"_s}};
    }
    return declarations + others;
}
