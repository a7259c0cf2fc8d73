#pragma once

/**
 * @file
 * Records of the head unit's connectivity. Thread-safety: plain values.
 */

#include <core/orvcore_export.h>

#include <QString>

/** @addtogroup types
 * @{ */

class QDebug;

/** Under which addresses and for which features the online speech functions may use the network. */
struct NetworkPermission
{
    QString url; ///< of the main online speech service
    QString poiUrl;
    QString httsUrl;
    QString proxyUsername;
    QString proxyPassword;
    QString proxyAddress;
    quint16 proxyPort = 0;
    quint16 outgoingPortRangeStart = 0; ///< first local port of outgoing connections
    quint16 outgoingPortRangeEnd = 0;   ///< last one
    QString endpointAddress; ///< of the main endpoint, as the other fields without a prefix
    quint16 endpointPort = 0;
    quint16 poiEndpointPort = 0;
    quint16 httsEndpointPort = 0;
    QString poiEndpointAddress;
    QString httsEndpointAddress;
    bool useSsl = false; ///< whether the endpoint uses TLS
    bool poiUseSsl = false;
    bool httsUseSsl = false;
    bool active = false; ///< whether the service or feature is permitted
    bool poiActive = false;
    bool messageActive = false;
    bool pttCountActive = false;
    bool thirdPartyActive = false; ///< services of outside providers
};

/**
 * Writes all fields, the password among them: the record is meant for the diagnostic logs of the
 * speech services.
 *
 * Leaves the stream in spacing mode, with a blank written.
 */
ORVCORE_EXPORT QDebug& operator<<(QDebug& stream, const NetworkPermission& permission);

/** For a temporary stream. */
inline QDebug& operator<<(QDebug&& stream, const NetworkPermission& permission)
{
    return stream << permission;
}

/** Mobile-network reception as the telephony side reports it. */
class ORVCORE_EXPORT SignalQuality
{
public:
    /** Levels above Usable are usable too. */
    enum SignalStrength : int
    {
        NotReported = -1,
        Invalid = 0,
        TooLow = 1,
        Usable = 2,
        NotKnown = 99, ///< or not detectable
    };

    /** Nothing reported yet. */
    SignalQuality() = default;

    /** What was reported, unchecked. */
    SignalQuality(SignalStrength strength, int errorRate);

    /** As reported: any number may come. */
    SignalStrength strength() const;

    /** Positive is a rate of errors; 0 or less means none, or none reported. */
    int errorRate() const;

    bool operator==(const SignalQuality& other) const;
    bool operator!=(const SignalQuality& other) const;

    /** Whether the strength is Invalid; one not reported or not known is not. */
    bool isInvalid() const;

    /** Whether online speech is not to be used: no usable strength, or errors. */
    bool isTooLowOrUnknown() const;

private:
    SignalStrength signalStrength = NotReported;
    int rateOfErrors = -1;
};

/** @} */
