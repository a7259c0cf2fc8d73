#include "fuzz.h"

#include <core/parsers/jsonfile.h>

#include <QStringList>

// The input is a document, a line break, and a path.
extern "C" int LLVMFuzzerTestOneInput(const quint8* data, std::size_t size) {
    const FuzzInput input(data, size);
    const int end = input.bytes.lastIndexOf('\n');
    const QJsonDocument document = QJsonDocument::fromJson(input.bytes.left(end));
    const QString path = QString::fromUtf8(input.bytes.mid(end + 1));
    QJsonValue expected = document.object();
    for (const QString& key : path.split(QLatin1Char('/'))) {
        expected = expected.isObject() ? expected.toObject().value(key) : QJsonValue(QJsonValue::Undefined);
    }
    const QJsonValue missing(QStringLiteral("missing"));
    if (expected.isUndefined()) { expected = missing; }
    require(JsonPath(document).value(path, missing) == expected, "a path gives the same value as its keys one by one");
    return 0;
}
