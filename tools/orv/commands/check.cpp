#include "checks/checks.h"
#include "commands/commands.h"
#include "commands/promptoptions.h"
#include "shell/commandline.h"
#include "shell/input.h"
#include "shell/output.h"
#include "shell/suggestion.h"

#include <QFileInfo>
#include <QJsonObject>

#include <algorithm>

namespace {

struct Kind
{
    const char* name;
    Findings (*check)(const QByteArray& content, const CheckOptions& options);
};

constexpr Kind kinds[] = {
    {"prompts", checkPrompts},
    {"settings", checkSettings},
    {"sounds", checkSounds},
    {"store", checkStore},
    {"table", checkTable},
};

const Kind& kindOf(const QString& name)
{
    QStringList names;
    for (const Kind& kind : kinds) {
        if (name == QLatin1String(kind.name)) {
            return kind;
        }
        names += QLatin1String(kind.name);
    }
    throw Failure{unknown("kind of file", name, names)
                  + QStringLiteral(" (%1)").arg(names.join(QStringLiteral(", ")))};
}

/** @return the number of findings @throw Failure when the file cannot be read */
int check(const Kind& kind, QString fileName, const CheckOptions& options, bool asJson)
{
    QFile file;
    openInput(file, fileName);
    const QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        throw Failure{QStringLiteral("%1: %2").arg(fileName, file.errorString())};
    }
    Findings findings = kind.check(content, options);
    std::stable_sort(findings.begin(), findings.end(),
        [](const Finding& a, const Finding& b) { return a.line < b.line; });
    for (const Finding& finding : qAsConst(findings)) {
        if (asJson) {
            printJson({{QStringLiteral("file"), fileName}, {QStringLiteral("line"), finding.line},
                {QStringLiteral("reason"), finding.reason}});
        } else {
            print(onOneLine(QStringLiteral("%1:%2: %3")
                                .arg(fileName, QString::number(finding.line), finding.reason))
                  + QLatin1Char('\n'));
        }
    }
    return findings.size();
}

} // namespace

QString onThisMachine(const QString& path, const CheckOptions& options)
{
    return path.startsWith(QLatin1Char('/')) ? options.root + path : path;
}

void checkFile(Findings& findings, int line, const QString& path, const CheckOptions& options)
{
    if (!QFileInfo(onThisMachine(path, options)).isFile()) {
        findings.append({line, QStringLiteral("no such file: \"%1\"").arg(path)});
    }
}

int runCheck(const QStringList& arguments)
{
    CommandLine commandLine("check",
        "Tells what the library would silently speak whole, drop, skip or overwrite, by file,\n"
        "line and reason. Exit code: 0 without a finding, 1 with any, 2 when a file cannot be "
        "read.\n"
        "Brand sounds are read from share/tts/common.json beside the program's bin "
        "folder.\n\nKinds:\n"
        "  prompts   prompt markup, one prompt per line, with the off-board markup of files it "
        "names\n"
        "  settings  the JSON file of an application's settings\n"
        "  sounds    a JSON table of brand sounds\n"
        "  store     a checksum store\n"
        "  table     an \"#ECO\" table file");
    commandLine.addOption("context",
        "For prompts: the caller's situation: general (without it), brandsound, a4a or a number.",
        "NAME|N", "general");
    commandLine.addOption(
        "brand", "For prompts and sounds: the car brand; TYX without it.", "NAME", "TYX");
    commandLine.addOption("root",
        "The folder that stands for the target's root folder: absolute paths are looked for below\n"
        "it, others in the working folder.",
        "DIR");
    commandLine.addOption("json", "Writes one JSON object per finding.");
    commandLine.addArgument("kind", "What the files hold.", "KIND");
    commandLine.addArgument("file", "A file; - for standard input.", "FILE…");
    commandLine.addExample("prompts examples/prompts/mistakes.txt");
    commandLine.addExample("table --json stations.eco | jq .reason");
    commandLine.process(arguments, arguments.size());
    const QStringList kindAndFiles = commandLine.arguments();
    if (kindAndFiles.size() < 2) {
        throw Failure{QStringLiteral("a kind and a file are needed")};
    }
    const Kind& kind = kindOf(kindAndFiles[0]);
    const CheckOptions options{contextOf(commandLine.value("context")), commandLine.value("brand"),
        commandLine.value("root")};
    if (commandLine.isSet("root") && !QFileInfo(options.root).isDir()) {
        throw Failure{QStringLiteral("no such folder: \"%1\"").arg(options.root)};
    }
    if (kind.check == checkPrompts) {
        loadSounds(commandLine);
    }
    int exitCode = 0;
    const QStringList fileNames = kindAndFiles.mid(1);
    for (const QString& fileName : fileNames) {
        try {
            const int count = check(kind, fileName, options, commandLine.isSet("json"));
            exitCode = std::max(exitCode, count > 0 ? 1 : 0);
        } catch (const Failure& failure) {
            printError(failure.reason); // and the other files are checked all the same
            exitCode = 2;
        }
    }
    return exitCode;
}
