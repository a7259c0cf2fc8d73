#include <core/parsers/jsonfile.h>

#include <core/log_p.h>

#include <QFile>
#include <QJsonParseError>
#include <QStringView>

#include <algorithm>

namespace {

QJsonValue member(const QJsonObject& object, QStringView key)
{
#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
    return object.value(key); // does not copy the key
#else
    return object.value(key.toString());
#endif
}

} // namespace

QJsonDocument JsonFile::loadDocument(const QString& fileName)
{
    static constexpr char here[] = "static QJsonDocument JsonFile::loadDocument(const QString&)";

    if (!QFile::exists(fileName)) {
        ORV_LOG(warning, here) << fileName << "does not exist.";
        return QJsonDocument();
    }
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        ORV_LOG(warning, here) << "Could not open for reading:" << fileName;
        return QJsonDocument();
    }
    const QByteArray bytes = file.readAll();
    file.close();

    QJsonParseError error;
    QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (document.isNull()) {
        ORV_LOG(critical, here) << "Parsing" << fileName << "failed"
                                << "due to" << error.errorString() << "at" << error.offset;
        return document;
    }
    ORV_LOG(debug, here) << "Loaded:" << fileName;
    return document;
}

JsonPath::JsonPath(const QJsonObject& object)
    : root(object)
{}

JsonPath::JsonPath(const QJsonDocument& document)
    : root(document.object()) // empty unless the document is an object
{}

bool JsonPath::isEmpty() const
{
    return root.isEmpty();
}

QJsonValue JsonPath::value(const QString& path, const QJsonValue& defaultValue) const
{
    QJsonObject object = root;
    const QChar* key = path.constData();
    const QChar* const pathEnd = key + path.size();
    for (;;) {
        const QChar* const keyEnd = std::find(key, pathEnd, QLatin1Char('/'));
        QJsonValue found = member(object, QStringView(key, keyEnd));
        if (found.isUndefined()) {
            return defaultValue;
        }
        if (keyEnd == pathEnd) {
            return found;
        }
        object = found.toObject(); // empty unless it is an object
        key = keyEnd + 1;
    }
}
