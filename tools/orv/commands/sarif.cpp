#include "commands/sarif.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <QUrl>

namespace {

QJsonObject textObject(const QString& text)
{
    return {{QStringLiteral("text"), text}};
}

QJsonObject resultOf(const QString& file, const Finding& finding)
{
    const RuleText& rule = textOf(finding.rule);
    // Names are relative references: a colon or a percent sign in them must not mean something else.
    const QString uri = QString::fromLatin1(QUrl::toPercentEncoding(file, "/"));
    return {{QStringLiteral("ruleId"), QLatin1String(rule.name)},
        {QStringLiteral("ruleIndex"), int(finding.rule)},
        {QStringLiteral("level"), QLatin1String(rule.severity)},
        {QStringLiteral("message"), textObject(finding.text)},
        {QStringLiteral("locations"),
            QJsonArray{QJsonObject{{QStringLiteral("physicalLocation"),
                QJsonObject{
                    {QStringLiteral("artifactLocation"), QJsonObject{{QStringLiteral("uri"), uri}}},
                    {QStringLiteral("region"),
                        QJsonObject{{QStringLiteral("startLine"), finding.line},
                            {QStringLiteral("startColumn"), finding.column}}}}}}}}};
}

} // namespace

QJsonObject sarifOf(const QVector<FileFinding>& findings)
{
    QJsonArray rules;
    for (int i = 0; i < int(Rule::RuleCount); ++i) {
        const RuleText& rule = textOf(Rule(i));
        rules.append(QJsonObject{{QStringLiteral("id"), QLatin1String(rule.name)},
            {QStringLiteral("shortDescription"), textObject(QLatin1String(rule.text))},
            {QStringLiteral("defaultConfiguration"),
                QJsonObject{{QStringLiteral("level"), QLatin1String(rule.severity)}}}});
    }
    QJsonArray results;
    for (const FileFinding& finding : findings) {
        results.append(resultOf(finding.first, finding.second));
    }
    const QJsonObject driver{{QStringLiteral("name"), QCoreApplication::applicationName()},
        {QStringLiteral("version"), QCoreApplication::applicationVersion()},
        {QStringLiteral("rules"), rules}};
    return {{QStringLiteral("version"), QStringLiteral("2.1.0")},
        {QStringLiteral("$schema"),
            QStringLiteral("https://json.schemastore.org/sarif-2.1.0.json")},
        {QStringLiteral("runs"),
            QJsonArray{QJsonObject{
                {QStringLiteral("tool"), QJsonObject{{QStringLiteral("driver"), driver}}},
                {QStringLiteral("columnKind"), QStringLiteral("utf16CodeUnits")},
                {QStringLiteral("results"), results}}}}};
}
