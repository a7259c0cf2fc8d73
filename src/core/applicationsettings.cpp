#include <core/applicationsettings.h>

#include <core/log_p.h>
#include <core/parsers/jsonfile.h>

#include <QCoreApplication>
#include <QGlobalStatic>

namespace {

Q_GLOBAL_STATIC_WITH_ARGS(JsonPath, settings, (QJsonDocument()))

bool loadSettings()
{
    static constexpr char here[] = "bool<unnamed>::loadSettings()";
    const QString fileName = QCoreApplication::applicationDirPath() + QLatin1Char('/')
                             + QCoreApplication::applicationName() + QLatin1String(".json");

    const QJsonDocument document = JsonFile::loadDocument(fileName);
    if (document.isNull()) {
        return false;
    }
    if (!document.isObject()) {
        ORV_LOG(debug, here) << "Invalid configuration file:" << fileName;
        return false;
    }
    // Written as const char*: QDebug would escape the line breaks of a QByteArray.
    const QByteArray text = '"' + document.toJson() + '"';
    ORV_LOG(debug, here) << "Loaded application config:" << fileName << text.constData();
    *settings = JsonPath(document.object());
    return true;
}

} // namespace

QJsonValue ApplicationSettings::value(const QString& key, const QJsonValue& defaultValue)
{
    if (settings.isDestroyed() || (settings->isEmpty() && !loadSettings())) {
        return defaultValue;
    }
    return settings->value(key, defaultValue);
}
