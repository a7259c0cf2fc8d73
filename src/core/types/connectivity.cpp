#include <core/types/connectivity.h>

#include <QDebug>

#include <tuple>

static_assert(sizeof(SignalQuality::SignalStrength) == 4, "the size is interface");

QDebug& operator<<(QDebug& stream, const NetworkPermission& permission)
{
    stream.nospace() << "NetworkPermission {"
                     << " url: " << permission.url << " poiUrl: " << permission.poiUrl
                     << " httsUrl: " << permission.httsUrl
                     << " proxyUsername: " << permission.proxyUsername
                     << " proxyPassword: " << permission.proxyPassword
                     << " proxyAddress: " << permission.proxyAddress
                     << " proxyPort: " << permission.proxyPort
                     << " outgoingPortRange: " << permission.outgoingPortRangeStart << "-"
                     << permission.outgoingPortRangeEnd
                     << " endpointAddress: " << permission.endpointAddress
                     << " endpointPort: " << permission.endpointPort
                     << " poiEndpointPort: " << permission.poiEndpointPort
                     << " httsEndpointPort: " << permission.httsEndpointPort
                     << " poiEndpointAddress: " << permission.poiEndpointAddress
                     << " httsEndpointAddress: " << permission.httsEndpointAddress
                     << " useSsl: " << permission.useSsl << " poiUseSsl: " << permission.poiUseSsl
                     << " httsUseSsl: " << permission.httsUseSsl << " active: " << permission.active
                     << " poiActive: " << permission.poiActive
                     << " messageActive: " << permission.messageActive
                     << " pttCountActive: " << permission.pttCountActive
                     << " thirdPartyActive: " << permission.thirdPartyActive << " }";
    return stream.space();
}

SignalQuality::SignalQuality(SignalStrength strength, int errorRate)
    : signalStrength(strength)
    , rateOfErrors(errorRate)
{}

SignalQuality::SignalStrength SignalQuality::strength() const
{
    return signalStrength;
}

int SignalQuality::errorRate() const
{
    return rateOfErrors;
}

bool SignalQuality::operator==(const SignalQuality& other) const
{
    return std::tie(signalStrength, rateOfErrors)
           == std::tie(other.signalStrength, other.rateOfErrors);
}

bool SignalQuality::operator!=(const SignalQuality& other) const
{
    return !(*this == other);
}

bool SignalQuality::isInvalid() const
{
    return signalStrength == Invalid;
}

bool SignalQuality::isTooLowOrUnknown() const
{
    return signalStrength < Usable || rateOfErrors > 0 || signalStrength == NotKnown;
}
