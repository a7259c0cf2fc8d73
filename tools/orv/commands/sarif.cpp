#include "commands/sarif.h"

namespace {

QJsonObject textObject(const QString& text)
{
    return {{u"text"_s, text}};
}

QJsonObject resultOf(const QString& file, const Finding& finding)
{
    const RuleText& rule = ruleTexts[int(finding.rule)];
    // Names are relative references, in which a colon or a percent sign must be escaped.
    const QString uri = QString::fromLatin1(QUrl::toPercentEncoding(file, "/"));
    return {{u"ruleId"_s, QLatin1String(rule.name)}, {u"ruleIndex"_s, int(finding.rule)},
        {u"level"_s, QLatin1String(rule.severity)}, {u"message"_s, textObject(finding.text)},
        {u"locations"_s, QJsonArray{QJsonObject{{u"physicalLocation"_s,
                             QJsonObject{{u"artifactLocation"_s, QJsonObject{{u"uri"_s, uri}}},
                                 {u"region"_s, QJsonObject{{u"startLine"_s, finding.place.line},
                                                   {u"startColumn"_s, finding.place.column}}}}}}}}};
}

} // namespace

QJsonObject sarifOf(const QVector<FileFinding>& findings)
{
    QJsonArray rules;
    for (const RuleText& rule : ruleTexts) {
        rules.append(QJsonObject{{u"id"_s, QLatin1String(rule.name)},
            {u"shortDescription"_s, textObject(QLatin1String(rule.text))},
            {u"defaultConfiguration"_s, QJsonObject{{u"level"_s, QLatin1String(rule.severity)}}}});
    }
    QJsonArray results;
    for (const FileFinding& finding : findings) {
        results.append(resultOf(finding.first, finding.second));
    }
    const QJsonObject driver{{u"name"_s, QCoreApplication::applicationName()},
        {u"version"_s, QCoreApplication::applicationVersion()}, {u"rules"_s, rules}};
    return {{u"version"_s, u"2.1.0"_s},
        {u"$schema"_s, u"https://json.schemastore.org/sarif-2.1.0.json"_s},
        {u"runs"_s, QJsonArray{QJsonObject{{u"tool"_s, QJsonObject{{u"driver"_s, driver}}},
                        {u"columnKind"_s, u"utf16CodeUnits"_s}, {u"results"_s, results}}}}};
}
