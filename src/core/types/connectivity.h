#pragma once

/**
 * @file
 * Records of the head unit's connectivity. Thread-safety: the records are plain values.
 */

#include <core/orvcore_export.h>

#include <QString>

/** @addtogroup types
 * @{ */

class QDebug;

/** The addresses and features with which online speech functions may use the network. */
struct NetworkPermission
{
    QString url;     ///< of the main online speech service
    QString poiUrl;  ///< of the POI service, like the other fields with this prefix
    QString httsUrl; ///< of the HTTS service, like the other fields with this prefix
    QString proxyUsername;
    QString proxyPassword;
    QString proxyAddress; ///< the host
    quint16 proxyPort = 0;
    quint16 outgoingPortRangeStart = 0; ///< first local port of outgoing connections
    quint16 outgoingPortRangeEnd = 0;   ///< last local port
    QString endpointAddress; ///< of the main endpoint, like the other fields without a prefix
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
 * Prints all fields, including the password: the record is meant for the diagnostic logs of the
 * speech services.
 *
 * Writes a blank at the end and leaves the stream in spacing mode.
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
    /** Levels above Usable are usable too, except NotKnown. */
    enum SignalStrength : int
    {
        NotReported = -1,
        Invalid = 0,
        TooLow = 1,
        Usable = 2,
        NotKnown = 99, ///< or not detectable
    };

    /** NotReported, and no error rate. */
    SignalQuality() = default;

    /** Does not check the values. */
    SignalQuality(SignalStrength strength, int errorRate);

    /** The reported value, which may be any number. */
    SignalStrength strength() const;

    /** The error rate as the source sends it; 0 or less means no errors, or none reported. */
    int errorRate() const;

    bool operator==(const SignalQuality& other) const;
    bool operator!=(const SignalQuality& other) const;

    /** Whether the strength is Invalid; false for NotReported and NotKnown. */
    bool isInvalid() const;

    /** Whether online speech must not be used: no usable strength, or errors. */
    bool isTooLowOrUnknown() const;

private:
    SignalStrength signalStrength = NotReported;
    int rateOfErrors = -1;
};

/** @} */
