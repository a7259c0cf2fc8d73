#pragma once

#include <core/orvcore_export.h>

#include <QJsonValue>

/** @addtogroup core
 * @{ */

class QString;

/**
 * The settings of the running application: a JSON object in a file beside its executable, named
 * after the application with ".json" behind it (QCoreApplication::applicationDirPath() and
 * applicationName()).
 *
 * Every look-up reads the file until it holds an object with a member, and none does afterwards; so
 * a file that is missing, broken, empty or an array is read each time. Not to be used any more once
 * main has returned.
 *
 * Thread-safety: the first look-up that succeeds must be over before other threads look up.
 */
class ORVCORE_EXPORT ApplicationSettings
{
public:
    ApplicationSettings() = delete; // only a static operation

    /**
     * The value at @p key, a path as in JsonPath::value().
     *
     * @return @p defaultValue when the settings cannot be loaded, of which the log tells, or hold
     *     no such value; a JSON null is a value
     */
    static QJsonValue value(const QString& key, const QJsonValue& defaultValue);
};

/** @} */
