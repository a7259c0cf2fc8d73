#include "commands/commands.h"

#include <core/parsers/jsonfile.h>

namespace {

void run(const CommandLine& commandLine)
{
    failIf(commandLine.positionalArguments().size() < 2,
        u"a file and a path are needed (orv help json)"_s);
    const QString path = commandLine.positionalArguments().at(1);
    // Qt reads and writes only arrays and objects, so values are wrapped in an array.
    QJsonValue defaultValue = QJsonValue::Undefined;
    if (commandLine.isSet(u"default"_s)) {
        const QString text = commandLine.value(u"default"_s);
        const QJsonArray array = QJsonDocument::fromJson('[' + text.toUtf8() + ']').array();
        failIf(array.size() != 1, u"the default is not a JSON value: \"%1\""_s.arg(text));
        defaultValue = array.at(0);
    }
    Input input(commandLine.fileName());
    const QJsonValue value = JsonPath(input.readJson()).value(path, defaultValue);
    if (value.isUndefined()) {
        printError(u"\"%1\" has no value at \"%2\""_s.arg(input.name, path), 1);
        return;
    }
    const QByteArray array = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    print(QString::fromUtf8(array.mid(1, array.size() - 2)) + u'\n');
}

} // namespace

const Command jsonCommand = {"json", "shows a value of a JSON file, by its path",
    u"Shows a value of a JSON file as JSON, on one line."_s,
    {{"file", "FILE", "A JSON file, or - for standard input."},
        {"path", "PATH", "The keys that lead to the value, joined by \"/\"."}},
    {{"default", "The value to show if the path leads to no value.", "JSON"}},
    {u"service.json audio/volume --default 70"_s}, run, 2};
