#include "commands/commands.h"
#include "shell/failure.h"
#include "shell/input.h"
#include "shell/output.h"
#include "shell/text.h"

#include <core/parsers/jsonfile.h>

#include <QJsonArray>

namespace {

// Qt reads and writes arrays and objects only, so a value goes wrapped in an array.
QJsonValue valueFromText(const QString& text)
{
    const QJsonArray array = QJsonDocument::fromJson('[' + text.toUtf8() + ']').array();
    if (array.size() != 1) {
        throw Failure{u"the default is not a JSON value: \"%1\""_s.arg(text)};
    }
    return array.at(0);
}

QString textFromValue(const QJsonValue& value)
{
    const QByteArray array = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(array.mid(1, array.size() - 2));
}

int run(const CommandLine& commandLine)
{
    if (commandLine.arguments().size() < 2) {
        throw Failure{u"a file and a path are needed (orv help json)"_s};
    }
    QString fileName = commandLine.fileName();
    const QString path = commandLine.arguments().at(1);
    const QJsonValue defaultValue = commandLine.isSet("default")
                                        ? valueFromText(commandLine.value("default"))
                                        : QJsonValue::Undefined;
    const QJsonValue value = JsonPath(readJson(fileName)).value(path, defaultValue);
    if (value.isUndefined()) {
        printError(u"\"%1\" has no value at \"%2\""_s.arg(fileName, path));
        return 1;
    }
    print(textFromValue(value) + u'\n');
    return 0;
}

} // namespace

Command jsonCommand()
{
    return {"json", "shows a value of a JSON file, by its path",
        u"Shows a value of a JSON file as JSON, on one line."_s,
        {{"file", "FILE", "A JSON file; - for standard input."},
            {"path", "PATH", "The keys that lead to the value, joined by \"/\"."}},
        {{"default", "What to show when the path leads to no value.", "JSON"}},
        {u"service.json audio/volume --default 70"_s}, run, 2};
}
