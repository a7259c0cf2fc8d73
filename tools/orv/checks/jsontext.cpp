#include "checks/jsontext.h"

#include <QHash>
#include <QJsonArray>
#include <QRegularExpression>

namespace {

/** An array or object that is being read. */
struct Level
{
    bool isObject;
    QHash<QString, int> lines; ///< of the members, by their keys
};

} // namespace

JsonText::JsonText(const QByteArray& content, Findings& findings)
{
    PlaceFinder places(content);
    QJsonParseError error;
    document = QJsonDocument::fromJson(content, &error);
    if (document.isNull()) {
        findings += {places.at(error.offset), Rule::NotLoaded,
            u"nothing is loaded: "_s + error.errorString()};
        return;
    }
    static const QRegularExpression piece(uR"("(?:[^"\\]++|\\.)*+"|[][{}:,]|[^][{}:,"\s]++)"_s,
        QRegularExpression::DotMatchesEverythingOption);
    QVector<Level> levels;
    QChar before;
    // With a character for each byte, as places are found by bytes.
    for (auto match = piece.globalMatch(QString::fromLatin1(content)); match.hasNext();) {
        const QRegularExpressionMatch part = match.next();
        const QChar first = part.captured().at(0);
        const bool isOpening = before == u'[' || before == u'{';
        if ((isOpening || before == u',') && first != u']' && first != u'}') {
            const Place place = places.at(part.capturedStart());
            if (levels.last().isObject) {
                const QByteArray array = '[' + part.captured().toLatin1() + ']';
                const QString key = QJsonDocument::fromJson(array).array().at(0).toString();
                members.append({key, place});
                int& line = levels.last().lines[key];
                if (line > 0) {
                    findings += {place, Rule::Overwritten,
                        u"\"%1\" overwrites that of line %2"_s.arg(key, QString::number(line))};
                }
                line = place.line;
            } else if (levels.size() == 1) {
                elements += place;
            }
        }
        if (first == u'[' || first == u'{') {
            levels += Level{first == u'{', {}};
        } else if (first == u']' || first == u'}') {
            levels.removeLast();
        }
        before = first;
    }
}
