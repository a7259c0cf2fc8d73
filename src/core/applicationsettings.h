#pragma once

#include <core/orvcore_export.h>

#include <QJsonValue>

/** @addtogroup core
 * @{ */

class QString;

/**
 * The settings of the running application: a JSON object in the file applicationName() + ".json" in
 * applicationDirPath(), both of QCoreApplication, which must exist.
 *
 * The first look-up loads the file. If it is missing, invalid, an array or an empty object, the
 * next look-up tries again; once loaded, it is not read again. Do not use after main has returned.
 *
 * Thread-safety: other threads may look up values after one look-up has loaded the file.
 */
class ORVCORE_EXPORT ApplicationSettings
{
public:
    ApplicationSettings() = delete; // only a static operation

    /**
     * The value at @p key, a path as in JsonPath::value().
     *
     * @return @p defaultValue if the settings cannot be loaded (logged) or have no value at
     *     @p key; a JSON null is a value
     */
    static QJsonValue value(const QString& key, const QJsonValue& defaultValue);
};

/** @} */
