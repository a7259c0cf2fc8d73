#include "commands/commands.h"
#include "shell/commandline.h"
#include "shell/output.h"

#include <core/parsers/jsonfile.h>

#include <QJsonArray>

namespace {

// Qt reads and writes arrays and objects only, so a value goes wrapped in an array.
QJsonValue valueFromText(const QString& text)
{
    const QJsonArray array = QJsonDocument::fromJson('[' + text.toUtf8() + ']').array();
    if (array.size() != 1) {
        throw Failure{QStringLiteral("the default is no JSON value: \"%1\"").arg(text)};
    }
    return array.at(0);
}

QString textFromValue(const QJsonValue& value)
{
    const QByteArray array = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(array.mid(1, array.size() - 2));
}

} // namespace

int runJson(const QStringList& arguments)
{
    CommandLine commandLine("json", "Shows a value of a JSON file as JSON, on one line.");
    commandLine.addOption("default", "What to show when the path leads to no value.", "JSON");
    commandLine.addArgument("file", "A JSON file.", "FILE");
    commandLine.addArgument("path", "The keys that lead to the value, joined by \"/\".", "PATH");
    commandLine.addExample("service.json audio/volume --default 70");
    commandLine.process(arguments, 2);
    if (commandLine.arguments().size() < 2) {
        throw Failure{QStringLiteral("a file and a path are needed (orv json --help)")};
    }
    const QString fileName = commandLine.arguments().at(0);
    const QString path = commandLine.arguments().at(1);
    const QJsonValue defaultValue = commandLine.isSet("default")
                                        ? valueFromText(commandLine.value("default"))
                                        : QJsonValue::Undefined;

    const QJsonDocument document = JsonFile::loadDocument(fileName);
    if (document.isNull()) {
        throw Failure{takeLoggedFailure()};
    }
    const QJsonValue value = JsonPath(document).value(path, defaultValue);
    if (value.isUndefined()) {
        printError(QStringLiteral("\"%1\" has no value at \"%2\"").arg(fileName, path));
        return 1;
    }
    print(textFromValue(value) + QLatin1Char('\n'));
    return 0;
}
