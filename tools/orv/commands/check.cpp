#include "checks/finding.h"
#include "commands/commands.h"

#include <QUrl>

#include <map>
#include <set>
#include <tuple>

namespace {

struct Kind
{
    const char* name;
    Findings (*check)(const QByteArray& content, const CheckOptions& options);
    const char* suffix; ///< of the files to check in a folder
    const char* text;
    bool usesSounds = false;
};

constexpr Kind kinds[] = {
    {"prompts", checkPrompts, ".txt",
        "prompt markup, one prompt per line, and the files of off-board\n"
        "            markup that it names",
        true},
    {"settings", checkSettings, ".json", "the JSON file of an application's settings"},
    {"sounds", checkSounds, ".json", "a JSON table of brand sounds"},
    {"store", checkStore, ".json", "a checksum store"},
    {"table", checkTable, ".eco", "an \"#ECO\" table file"},
};

/** A finding with the name of its file. */
using FileFinding = QPair<QString, Finding>;

/** Identifies a finding even if its line moves: file, rule and text. */
using Key = std::tuple<QString, QString, QString>;

/** The arguments and results of a run. */
struct Task
{
    const Kind& kind;
    QVector<PromptContext> contexts;
    CheckOptions options;
    QStringList allowed;         ///< names of rules
    std::multiset<Key> baseline; ///< accepted findings
    int accepted = 0;
    QVector<FileFinding> findings = {};
};

/** The findings that an earlier run wrote to a file with --json. @throw Failure */
std::multiset<Key> readBaseline(const QString& fileName)
{
    std::multiset<Key> keys;
    LineReader reader(fileName);
    QByteArray line;
    while (reader.readBytes(line)) {
        const QJsonObject object = QJsonDocument::fromJson(line).object();
        const QString number = QString::number(reader.lineNumber);
        failIf(!object.contains(u"rule"_s),
            u"%1:%2: not a finding that orv check --json wrote"_s.arg(fileName, number));
        keys.insert({object.value(u"file"_s).toString(), object.value(u"rule"_s).toString(),
            object.value(u"reason"_s).toString()});
    }
    return keys;
}

/** The findings in all contexts, with the names of their contexts. */
std::map<Finding, QStringList> findAll(Task& task, const QByteArray& content)
{
    std::map<Finding, QStringList> contextsByFinding;
    for (const PromptContext context : qAsConst(task.contexts)) {
        const QString name = nameOf(context);
        task.options.context = context;
        const Findings findings = task.kind.check(content, task.options);
        for (const Finding& finding : findings) {
            QStringList& names = contextsByFinding[finding];
            if (!names.contains(name)) {
                names += name;
            }
        }
    }
    return contextsByFinding;
}

/** Checks one file, and keeps the findings that are not accepted. @throw Failure */
void check(Task& task, const QString& fileName)
{
    Input input(fileName);
    const auto found = findAll(task, input.readContent());
    for (const auto& [finding, contexts] : found) {
        const bool isOfAll = contexts.size() == task.contexts.size();
        const QString text =
            isOfAll ? finding.text : u"%1 (in %2)"_s.arg(finding.text, contexts.join(u", "_s));
        const QString rule = QLatin1String(ruleTexts[int(finding.rule)].name);
        if (task.allowed.contains(rule) || task.baseline.extract({input.name, rule, text})) {
            ++task.accepted;
        } else {
            task.findings.append({input.name, {finding.place, finding.rule, text}});
        }
    }
}

/** The files to check for an argument. */
QStringList filesFor(const Kind& kind, const QString& argument)
{
    if (argument.isEmpty() || !QFileInfo(argument).isDir()) {
        return {argument};
    }
    const QLatin1String suffix(kind.suffix);
    const QStringList files = filesAt(argument);
    QStringList names = files.filter(QRegularExpression(u"\\%1\\z"_s.arg(suffix)));
    const auto others = files.size() - names.size();
    if (others > 0) {
        printError(
            u"%1: left out %2 not named *%3"_s.arg(argument, counted(others, "file"), suffix));
    }
    if (names.isEmpty()) {
        printError(u"%1: no file named *%2 in it"_s.arg(argument, suffix), 2);
    }
    return names;
}

QJsonObject resultOf(const QString& file, const Finding& finding)
{
    const RuleText& rule = ruleTexts[int(finding.rule)];
    // Names are relative references, in which a colon or a percent sign must be escaped.
    const QString uri = QString::fromLatin1(QUrl::toPercentEncoding(file, "/"));
    return {{u"ruleId"_s, QLatin1String(rule.name)}, {u"ruleIndex"_s, int(finding.rule)},
        {u"level"_s, QLatin1String(rule.severity)},
        {u"message"_s, QJsonObject{{u"text"_s, finding.text}}},
        {u"locations"_s, QJsonArray{QJsonObject{{u"physicalLocation"_s,
                             QJsonObject{{u"artifactLocation"_s, QJsonObject{{u"uri"_s, uri}}},
                                 {u"region"_s, QJsonObject{{u"startLine"_s, finding.place.line},
                                                   {u"startColumn"_s, finding.place.column}}}}}}}}};
}

/** The findings as SARIF 2.1.0, which build servers and editors read. */
QJsonObject sarifOf(const QVector<FileFinding>& findings)
{
    QJsonArray rules;
    for (const RuleText& rule : ruleTexts) {
        rules.append(QJsonObject{{u"id"_s, QLatin1String(rule.name)},
            {u"shortDescription"_s, QJsonObject{{u"text"_s, QLatin1String(rule.text)}}},
            {u"defaultConfiguration"_s, QJsonObject{{u"level"_s, QLatin1String(rule.severity)}}}});
    }
    QJsonArray results;
    for (const auto& [file, finding] : findings) {
        results.append(resultOf(file, finding));
    }
    const QJsonObject driver{{u"name"_s, QCoreApplication::applicationName()},
        {u"version"_s, QCoreApplication::applicationVersion()}, {u"rules"_s, rules}};
    return {{u"version"_s, u"2.1.0"_s},
        {u"$schema"_s, u"https://json.schemastore.org/sarif-2.1.0.json"_s},
        {u"runs"_s, QJsonArray{QJsonObject{{u"tool"_s, QJsonObject{{u"driver"_s, driver}}},
                        {u"columnKind"_s, u"utf16CodeUnits"_s}, {u"results"_s, results}}}}};
}

void show(const Task& task, const CommandLine& commandLine)
{
    if (commandLine.isSet(u"sarif"_s)) {
        printJson(sarifOf(task.findings));
        return;
    }
    for (const auto& [file, finding] : task.findings) {
        const auto& [name, severity, summary] = ruleTexts[int(finding.rule)];
        // The codes of red, yellow and cyan.
        const int colour = *severity == 'e' ? 31 : *severity == 'w' ? 33 : 36;
        const QByteArray label = coloured(u"%1"_s, colour).toUtf8() + ": ";
        printRecord({{"file", file, "%1:"}, {"line", finding.place.line, "%1:"},
            {"column", finding.place.column, "%1: "},
            {"severity", QLatin1String(severity), label.constData()},
            {"reason", finding.text, "%1 "}, {"rule", QLatin1String(name), "[%1]\n"}});
    }
}

Task taskOf(const CommandLine& commandLine)
{
    Task task{
        kinds[placeAmong(namesOf(kinds), "kind of file", commandLine.positionalArguments().at(0))],
        contextsOf(commandLine), {}, commandLine.values(u"allow"_s), {}};
    task.options.brand = commandLine.value(u"brand"_s);
    task.options.root = commandLine.value(u"root"_s);
    failIf(commandLine.isSet(u"root"_s) && !QFileInfo(task.options.root).isDir(),
        u"no such folder: \"%1\""_s.arg(task.options.root));
    failIf(commandLine.isSet(u"json"_s) && commandLine.isSet(u"sarif"_s),
        u"either --json or --sarif"_s);
    for (const QString& rule : qAsConst(task.allowed)) {
        failIf(!namesOf(ruleTexts).contains(rule),
            unknown("rule", rule, namesOf(ruleTexts)) + u" (orv help check lists them)"_s);
    }
    if (commandLine.isSet(u"baseline"_s)) {
        task.baseline = readBaseline(commandLine.value(u"baseline"_s));
    }
    if (task.kind.usesSounds) {
        task.options.soundIds = loadSounds(commandLine, false).keys();
        task.options.soundIds.sort();
    }
    return task;
}

void run(const CommandLine& commandLine)
{
    failIf(commandLine.positionalArguments().size() < 2, u"a kind and a file are needed"_s);
    Task task = taskOf(commandLine);
    const QStringList arguments = commandLine.positionalArguments().mid(1);
    for (const QString& argument : arguments) {
        const QStringList files = filesFor(task.kind, argument);
        for (const QString& file : files) {
            try {
                check(task, file);
            } catch (const Failure& failure) { // the other files are still checked
                printError(failure.reason, 2);
            }
        }
    }
    show(task, commandLine);
    if (task.accepted > 0) {
        printError(u"accepted %1"_s.arg(counted(task.accepted, "finding")));
    }
    raiseExitCode(task.findings.isEmpty() ? 0 : 1);
}

QString helpText()
{
    QString text =
        u"Finds mistakes in prompts and files: markup that is read aloud, and what the\n"
        "library drops, skips or overwrites. Each finding is one line:\n"
        "FILE:LINE:COLUMN: SEVERITY: TEXT [RULE]. Exit code: 0 if there are no findings,\n"
        "1 if there are any, 2 if a file cannot be read.\n\nKinds:\n"_s;
    for (const Kind& kind : kinds) {
        text += u"  %1  %2\n"_s.arg(QLatin1String(kind.name), -8).arg(QLatin1String(kind.text));
    }
    text += u"\nRules:\n"_s;
    for (const RuleText& rule : ruleTexts) {
        text += u"  %1  %2\n"_s.arg(QLatin1String(rule.name), -17).arg(QLatin1String(rule.text));
    }
    return text.trimmed();
}

} // namespace

const Command checkCommand = {"check",
    "finds mistakes in prompts, sounds, tables, stores and settings", helpText(),
    {{"kind", "KIND", "What the files contain.", [] { return namesOf(kinds); }},
        {"file", "FILE…",
            "A file, - for standard input, or a folder. In a folder and the folders below "
            "it, prompts are the files *.txt, tables *.eco, all other kinds *.json."}},
    {contextOption, brandOption, soundsOption,
        {"root",
            "The folder that stands for the target's root folder. Absolute paths are looked "
            "up in it, other paths in the working folder.",
            "DIR"},
        {"allow", "Accepts all findings of a rule. The option can be repeated.", "RULE", "",
            [] { return namesOf(ruleTexts); }},
        {"baseline",
            "Accepts the findings that an earlier run wrote into FILE with --json, even if "
            "their lines have moved.",
            "FILE"},
        jsonOption, {"sarif", "Writes all findings as SARIF 2.1.0."}},
    {u"prompts examples/prompts/mistakes.txt"_s,
        u"prompts --context general --context a4a speech/prompts"_s,
        u"table --json stations.eco | jq .reason"_s},
    run};
